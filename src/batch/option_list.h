#pragma once

#include <functional>
#include <string>
#include <vector>

#include "manual/value_form.h"

// What a command says of its options. The library that reads command lines is dear to compile: it is known to
// command_line.cpp alone, and commands describe themselves through this.
namespace anomalis::batch {

class OptionList {
  public:
    /// How the text of an option is taken, and what it looks like.
    struct Take {
        /// Returns why it cannot be taken, or "".
        std::function<std::string(const std::string& text)> read;
        manual::ValueForm form{};
    };
    enum class Need { may, must };

    virtual ~OptionList() = default;

    /// A file that stands without a name, in the order of the calls. It must be there; "-" is the standard
    /// input.
    virtual void file(const manual::ValueForm& form, std::string& value, const std::string& purpose) = 0;
    /// The last of them: one or more.
    virtual void files(const manual::ValueForm& form, std::vector<std::string>& values,
                       const std::string& purpose) = 0;

    /// A file to write. "-" is the standard output, which then holds nothing else; `ending` is that of what
    /// only files can tell by their names, such as pictures.
    virtual void output(const std::string& names, std::string& path, const manual::ValueForm& form,
                        const std::string& purpose, Need need = Need::may,
                        const std::string& ending = "") = 0;
    /// Names such as "-o,--output".
    virtual void text(const std::string& names, std::string& value, const manual::ValueForm& form,
                      const std::string& purpose) = 0;
    virtual void taken(const std::string& names, const Take& take, const std::string& purpose,
                       Need need = Need::may) = 0;
    /// An option that may be given any number of times, each time with one text.
    virtual void several(const std::string& names, const Take& take, const std::string& purpose) = 0;
    /// One of `choices`; what `value` holds before is shown as the usual one.
    virtual void choice(const std::string& names, std::string& value, const std::vector<std::string>& choices,
                        const std::string& purpose) = 0;
    virtual void flag(const std::string& names, bool& value, const std::string& purpose) = 0;

    /// Of the options that follow at least one is needed.
    virtual void any_of(const std::string& name) = 0;

    /// Looks at all options together when they are read. `check` returns "" or why they do not go together;
    /// `option` is the one that is named then.
    virtual void at_end(const std::string& option, const std::function<std::string()>& check) = 0;
};

}  // namespace anomalis::batch
