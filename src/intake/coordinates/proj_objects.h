#pragma once

#include <memory>
#include <string>
#include <vector>

struct pj_ctx;
struct PJconsts;

// What PROJ hands out, kept and given back. Private to this folder.
namespace anomalis::intake {

struct FreeProjContext {
    void operator()(pj_ctx* context) const;
};
struct FreeProjObject {
    void operator()(PJconsts* object) const;
};
using ProjContext = std::unique_ptr<pj_ctx, FreeProjContext>;
using ProjObject = std::unique_ptr<PJconsts, FreeProjObject>;

/// A context that says nothing and asks no network.
ProjContext proj_context();

/// The system of places on the map that a text means: a number, a name or any text that PROJ takes; of a
/// system with heights the part without. Raises Fault. Objects must go before their context.
ProjObject proj_system(pj_ctx* context, const std::string& text);

/// "EPSG:32754" of a system; "" for one without a number.
std::string system_code(const PJconsts* system);
std::string system_name(const PJconsts* system);
bool is_geographic(const PJconsts* system);

struct SystemName {
    std::string code, name;
    std::vector<std::string> words;  ///< of the name
};
/// All systems of places on the map that the EPSG dataset has, without those that it gave up; read once.
const std::vector<SystemName>& all_system_names();

}  // namespace anomalis::intake
