#include <array>
#include <dlfcn.h>
#include <string>
#include <string_view>
#include <unistd.h>

#include "app/picture_module.h"
#include "app/picture_writers.h"
#include "core/executable_folder.h"
#include "core/failure.h"
#include "core/prompts.h"
#include "core/session.h"
#include "core/version.h"

namespace anomalis {

namespace {

constexpr std::string_view module_name = "anomalis-pictures.so";

/// Beside the program in a build; else where it is installed, as seen from the program.
std::array<std::string, 2> module_places() {
    const std::string folder = executable_folder();
    return {folder + std::string(module_name),
            folder + ANOMALIS_MODULES_FROM_PROGRAM "/" + std::string(module_name)};
}

[[noreturn]] void refuse(const std::string& why) {
    throw Fault("The pictures of anomalis-batch come from " + std::string(module_name) + ", which " + why +
                ". Building or installing the program puts it in its place");
}

void* open_module() {
    const auto places = module_places();
    for (const std::string& place : places) {
        if (::access(place.c_str(), F_OK) != 0) continue;
        if (void* module = ::dlopen(place.c_str(), RTLD_NOW | RTLD_LOCAL)) return module;
        refuse("could not be loaded (" + std::string(::dlerror()) + ")");
    }
    refuse("was not found, neither as " + places[0] + " nor as " + places[1]);
}

template <class Function>
Function* function_of(void* module, const char* name) {
    void* const found = ::dlsym(module, name);
    if (!found) refuse("lacks " + std::string(name));
    return reinterpret_cast<Function*>(found);
}

/// The module stays until the program ends.
std::unique_ptr<batch::PictureWriter> load_writer(int& argc, char** argv) {
    void* const module = open_module();
    const std::string version =
        function_of<decltype(anomalis_pictures_version)>(module, "anomalis_pictures_version")();
    if (version != application_version())
        refuse("is of version " + version + " and does not belong to version " +
               std::string(application_version()));
    return std::unique_ptr<batch::PictureWriter>(function_of<decltype(anomalis_make_picture_writer)>(
        module, "anomalis_make_picture_writer")(&argc, argv));
}

/// Loads the module at the first picture: the commands that draw nothing do not pay for a window system.
class LoadedPictureWriter : public batch::PictureWriter {
  public:
    LoadedPictureWriter(int& argc, char** argv) : argc_(argc), argv_(argv) {}

    /// Raises Fault where the module cannot be loaded.
    void prepare() override {
        if (!writer_) writer_ = load_writer(argc_, argv_);
        writer_->prepare();
    }

    int write(Session& session, const batch::PictureRequest& request) override {
        return load(session.prompts) ? writer_->write(session, request) : -1;
    }

    int write_map(Prompts& prompts, const intake::SurveyIndex& index,
                  const batch::MapRequest& request) override {
        return load(prompts) ? writer_->write_map(prompts, index, request) : -1;
    }

    int write_results_map(Prompts& prompts, const survey::SurveyResults& results,
                          const survey::ResultsMapMarks& marks, const batch::MapRequest& request) override {
        return load(prompts) ? writer_->write_results_map(prompts, results, marks, request) : -1;
    }

  private:
    bool load(Prompts& prompts) {
        return writer_ || report_failure(prompts, "", [&] { writer_ = load_writer(argc_, argv_); }) == 0;
    }

    int& argc_;
    char** argv_;
    std::unique_ptr<batch::PictureWriter> writer_;
};

}  // namespace

std::unique_ptr<batch::PictureWriter> make_picture_writer(int& argc, char** argv) {
    return std::make_unique<LoadedPictureWriter>(argc, argv);
}

}  // namespace anomalis
