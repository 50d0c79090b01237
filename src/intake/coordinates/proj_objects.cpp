#include "intake/coordinates/proj_objects.h"

#include <array>
#include <cstddef>
#include <optional>
#include <proj.h>

#include "core/failure.h"
#include "core/text.h"
#include "intake/coordinates/proj_library.h"
#include "intake/coordinates/system_names.h"

namespace anomalis::intake {

namespace {

constexpr const char* dataset = "EPSG";
constexpr std::array map_types{PJ_TYPE_PROJECTED_CRS, PJ_TYPE_GEOGRAPHIC_2D_CRS};

constexpr const char* way_out =
    "Give its EPSG number (32754), its name (WGS 84 / UTM zone 54S) or the text of a .prj file";

/// The part of a system that tells places, without heights and without shifts to another datum.
ProjObject on_the_map(pj_ctx* context, ProjObject object) {
    while (object) {
        const PJ_TYPE type = ANOMALIS_PROJ(proj_get_type)(object.get());
        if (type == PJ_TYPE_COMPOUND_CRS) {
            object.reset(ANOMALIS_PROJ(proj_crs_get_sub_crs)(context, object.get(), 0));
        } else if (type == PJ_TYPE_BOUND_CRS) {
            object.reset(ANOMALIS_PROJ(proj_get_source_crs)(context, object.get()));
        } else {
            const bool places = type == PJ_TYPE_PROJECTED_CRS || type == PJ_TYPE_GEOGRAPHIC_2D_CRS ||
                                type == PJ_TYPE_GEOGRAPHIC_3D_CRS;
            return places ? std::move(object) : nullptr;
        }
    }
    return nullptr;
}

/// The system of the dataset that a definition without a number describes; itself where there is none.
ProjObject identified(pj_ctx* context, ProjObject object) {
    constexpr int sure = 70;  // % of PROJ: the same but for the name
    int* confidence = nullptr;
    PJ_OBJ_LIST* found = ANOMALIS_PROJ(proj_identify)(context, object.get(), dataset, nullptr, &confidence);
    if (found && ANOMALIS_PROJ(proj_list_get_count)(found) > 0 && confidence[0] >= sure)
        object.reset(ANOMALIS_PROJ(proj_list_get)(context, found, 0));
    ANOMALIS_PROJ(proj_int_list_destroy)(confidence);
    ANOMALIS_PROJ(proj_list_destroy)(found);
    return object;
}

bool is_definition(const std::string& text) {
    return text.find('[') != std::string::npos || text.find("+proj") != std::string::npos ||
           text.starts_with("urn:") || text.starts_with("{");
}

/// "EPSG:32754" or "32754", not a name.
bool is_number(const std::string& text) {
    const std::string digits = text.substr(text.find(':') == std::string::npos ? 0 : text.find(':') + 1);
    return !digits.empty() && digits.find_first_not_of("0123456789") == std::string::npos;
}

ProjObject created(pj_ctx* context, const std::string& text) {
    return on_the_map(context, ProjObject(ANOMALIS_PROJ(proj_create)(context, text.c_str())));
}

ProjObject of_name(pj_ctx* context, const std::string& name) {
    PJ_OBJ_LIST* found = ANOMALIS_PROJ(proj_create_from_name)(
        context, dataset, name.c_str(), map_types.data(), map_types.size(), 0, 1, nullptr);
    ProjObject object;
    if (found && ANOMALIS_PROJ(proj_list_get_count)(found) > 0)
        object.reset(ANOMALIS_PROJ(proj_list_get)(context, found, 0));
    ANOMALIS_PROJ(proj_list_destroy)(found);
    return object;
}

[[noreturn]] void raise_unknown(const std::string& text, const std::vector<SystemName>& near) {
    std::string message = "No coordinate system is known as " + text + ". " + way_out;
    for (const SystemName& system : near)
        message +=
            (&system == near.data() ? ". Near to it: " : ", ") + system.name + " (" + system.code + ")";
    throw Fault(message);
}

std::vector<SystemName> read_system_names() {
    const ProjContext context = proj_context();
    PROJ_CRS_LIST_PARAMETERS* wanted = ANOMALIS_PROJ(proj_get_crs_list_parameters_create)();
    wanted->types = map_types.data();
    wanted->typesCount = map_types.size();
    int count = 0;
    PROJ_CRS_INFO** list =
        ANOMALIS_PROJ(proj_get_crs_info_list_from_database)(context.get(), dataset, wanted, &count);
    std::vector<SystemName> names;
    names.reserve(static_cast<std::size_t>(count));
    for (int i = 0; list && i < count; ++i)
        names.push_back(
            {std::string(dataset) + ":" + list[i]->code, list[i]->name, name_words(list[i]->name)});
    ANOMALIS_PROJ(proj_crs_info_list_destroy)(list);
    ANOMALIS_PROJ(proj_get_crs_list_parameters_destroy)(wanted);
    return names;
}

ProjObject of_words(pj_ctx* context, const std::string& text) {
    if (ProjObject object = of_name(context, text)) return object;
    const NameSearch search = search_names(text, all_system_names());
    if (!search.found) raise_unknown(text, search.near);
    return created(context, search.found->code);
}

}  // namespace

void FreeProjContext::operator()(pj_ctx* context) const {
    ANOMALIS_PROJ(proj_context_destroy)(context);
}
void FreeProjObject::operator()(PJconsts* object) const {
    ANOMALIS_PROJ(proj_destroy)(object);
}

ProjContext proj_context() {
    ProjContext context(ANOMALIS_PROJ(proj_context_create)());
    if (!context) throw Fault(FaultKind::out_of_memory);
    ANOMALIS_PROJ(proj_log_level)(context.get(), PJ_LOG_NONE);
    ANOMALIS_PROJ(proj_context_set_enable_network)(context.get(), 0);
    return context;
}

ProjObject proj_system(pj_ctx* context, const std::string& given) {
    const std::string text(trim_blanks(single_line(given)));
    if (text.empty()) throw Fault(std::string("No coordinate system was given. ") + way_out);
    if (is_number(text)) {
        const std::string code =
            text.find(':') == std::string::npos ? std::string(dataset) + ":" + text : text;
        if (ProjObject object = created(context, code)) return object;
        raise_unknown(code, {});
    }
    if (!is_definition(text)) return of_words(context, text);
    if (ProjObject object = created(context, text)) return identified(context, std::move(object));
    raise_unknown(text.substr(0, text.find_first_of("[,")), {});
}

std::string system_code(const PJconsts* system) {
    const char* authority = ANOMALIS_PROJ(proj_get_id_auth_name)(system, 0);
    const char* code = ANOMALIS_PROJ(proj_get_id_code)(system, 0);
    return authority && code ? std::string(authority) + ":" + code : "";
}

std::string system_name(const PJconsts* system) {
    const char* name = ANOMALIS_PROJ(proj_get_name)(system);
    return name ? name : "";
}

bool is_geographic(const PJconsts* system) {
    return ANOMALIS_PROJ(proj_get_type)(system) != PJ_TYPE_PROJECTED_CRS;
}

const std::vector<SystemName>& all_system_names() {
    static const std::vector<SystemName> names = read_system_names();
    return names;
}

}  // namespace anomalis::intake
