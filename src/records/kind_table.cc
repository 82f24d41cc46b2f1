#include "records/kind_table.h"

#include <strings.h>

namespace qv {
namespace {

using F = KindFile;
constexpr bool R = true;
constexpr bool I = true;
constexpr bool D = true;
constexpr bool _ = false;

// Text, then Orvik support. Labels, sections and refusals are the system's
// own texts, slips included.
const std::vector<KindInfo> kKinds = {
    {"AD", "Ads", "Ads", F::kFixed, "AD", R, _, _, nullptr, nullptr, nullptr},
    {"AML", "", "Alias Module Language", F::kInstall, "IN", _, _, _,
     "Alias Module Language is not a part of Orvik", nullptr, nullptr},
    {"AMLA", "Archive Module Languages", "Archive Module Languages", F::kInstall, "IN", R, _, D,
     nullptr, nullptr, nullptr},
    {"AR", "Archives", "Archives", F::kInstall, "IN", R, _, D, nullptr,
     "ARs not implemented in QUORVEX for Orvik for MPPutARCompleteList", nullptr},
    {"CF", "Created Files", "Created Files", F::kModule, "MO", R, _, D, nullptr,
     "CFs not implemented in QUORVEX for Orvik for MPPutCFCompleteList", nullptr},
    {"DA", "Driver Ads", "Install Ads", F::kInstall, "IN", R, I, D, nullptr, "", nullptr},
    {"Resources", "Resource Strings", "Resources", F::kLanguage, "RES", R, _, _, nullptr, nullptr,
     nullptr},
    // Install modules are rows of the database only.
    {"DM", "Modules", "", F::kInstall, "IN", R, I, D, nullptr, nullptr, nullptr},
    {"DP", "Driver Products", "Install Products", F::kInstall, "IN", R, I, D, nullptr, "", nullptr},
    {"DR", "Drivers", "Install", F::kInstall, "IN", R, I, _, nullptr, nullptr, nullptr},
    {"DRK", "DRKs", "Development Reg Keys", F::kFixed, "RAM", R, I, D, nullptr, nullptr, nullptr},
    {"DRKPR", "DRKPRs", "Development Reg Key Products", F::kFixed, "RAM", R, I, D, nullptr, nullptr,
     nullptr},
    {"DVPR", "DVPRs", "Development Products", F::kFixed, "RAM", R, I, D, nullptr, nullptr, nullptr},
    {"FG", "File Groups", "File Groups", F::kModule, "MO", R, I, D, nullptr, nullptr, nullptr},
    {"FGA", "File Group Ads", "File Group Ads", F::kModule, "MO", R, I, D, nullptr,
     "FGAs not implemented in QUORVEX for Orvik for MPPutFGACompleteList", nullptr},
    {"FGD", "FGDs", "File Groups I Require", F::kModule, "MO", R, I, D, nullptr, nullptr, nullptr},
    {"IE", "IEs", "System-Settings Records", F::kUnsettled, "", R, I, _, nullptr, nullptr,
     "(Orvik not supported feature)."},
    {"II", "IIs", "Installed Icons", F::kModule, "MO", R, I, D, nullptr, nullptr, nullptr},
    {"IIL", "FGDs", "Installed Icon Locations", F::kModule, "MO", R, I, D, nullptr, nullptr,
     nullptr},
    {"IL", "ILs", "Icon Locations", F::kFixed, "ILO", R, I, D, nullptr, nullptr, nullptr},
    {"ILA", "ILAs", "Interface Languages", F::kInstall, "IN", R, I, D, nullptr, nullptr, nullptr},
    {"LO", "FGDs", "Locations", F::kFixed, "LO", R, I, D, nullptr, nullptr, nullptr},
    {"MDEP", "FGDs", "Modules I Require", F::kModule, "MO", R, I, _, nullptr, nullptr,
     "(not tarrowby supported)."},
    {"ML", "MLs", "Module Locations", F::kModule, "MO", R, I, D, nullptr, nullptr, nullptr},
    {"MLA", "MLAs", "Languages", F::kModule, "MO", R, I, D, nullptr, nullptr, nullptr},
    {"MO", "Modules", "Module", F::kModule, "MO", R, I, _, nullptr, nullptr, nullptr},
    {"MOSR", "", "Module System-Settings", F::kSettings, "SSR", _, I, D, nullptr, nullptr, nullptr},
    {"MP", "MPs", "Sub-Products", F::kProduct, "PR", R, I, D, nullptr, nullptr, nullptr},
    {"Strings", "", "Strings", F::kLanguage, "MSG", _, _, _,
     "Setup Messages are not part of Orvik.", nullptr, nullptr},
    {"PE", "PEs", "System-Settings Records", F::kUnsettled, "", R, I, _, nullptr, nullptr, ""},
    {"PM", "PMs", "Modules", F::kProduct, "PR", R, I, D, nullptr, nullptr, nullptr},
    {"PR", "Products", "Product", F::kProduct, "PR", R, I, _, nullptr, nullptr, nullptr},
    {"RE", "REs", "System-Settings Records", F::kUnsettled, "", R, I, _, nullptr, nullptr, ""},
    {"SF", "SFs", "File Group Files", F::kModule, "MO", R, I, _, nullptr, nullptr,
     "Cannot delete SF record because I cannot delete its associations"},
    {"SFSR", "SFSRs", "File System-Settings", F::kSettings, "SSR", R, I, D, nullptr, nullptr,
     nullptr},
    {"SLA", "", "Shipping Languages", F::kFixed, "LA", _, _, _,
     "Shipping Language is not a part of Orvik", nullptr, nullptr},
    {"SM", "SMs", "Shipping Media", F::kInstall, "IN", R, I, D, nullptr, nullptr, nullptr},
    {"SSR", "", "", F::kSettings, "SSR", _, I, _, nullptr, nullptr, nullptr},
    {"DRKSSR", "", "DRKSSRs", F::kFixed, "DSI", _, _, _, "DRKSSR is not a part of Orvik", nullptr,
     nullptr},
    {"MOCR", "", "Module Created SSRs", F::kSettings, "SSR", _, I, D, nullptr, nullptr, nullptr},
    {"SFCR", "SFCRs", "Shipped File Created SSRs", F::kSettings, "SSR", R, I, D, nullptr, nullptr,
     nullptr},
    {"CIE", "CIEs", "Created System-Settings", F::kUnsettled, "", R, I, _, nullptr, nullptr, ""},
    {"CRE", "CREs", "Created System-Settings", F::kUnsettled, "", R, I, _, nullptr, nullptr, ""},
    {"CPE", "CPEs", "Created System-Settings", F::kUnsettled, "", R, I, _, nullptr, nullptr, ""},
    {"CSSR", "", "", F::kUnsettled, "", _, I, _, nullptr, nullptr, nullptr},
    {"DMG", "DMGs", "Driver Module Groups", F::kInstall, "IN", R, I, D, nullptr, nullptr, nullptr},
    {"MG", "MGdules", "Module Groups", F::kModuleGroup, "MG", R, I, _, nullptr, nullptr, nullptr},
    {"DRKCSSR", "", "DRKCSSRs", F::kFixed, "DSI", _, _, _, "DRKCSSR is not a part of Orvik",
     nullptr, nullptr},
    {"MGM", "MGMs", "Module Group Modules", F::kModuleGroup, "MG", R, I, D, nullptr, nullptr,
     nullptr},
    {"OSDL", "OSDLs", "OS Document Language", F::kFixed, "OSDL", R, I, D, nullptr, nullptr,
     nullptr},
    {"MDL", "Module Document Languages", "Document Languages", F::kModule, "MO", R, I, D, nullptr,
     "", nullptr},
    {"DODL", "Driver OS Languages", "Driver OSDLs", F::kInstall, "IN", R, I, D, nullptr, "",
     nullptr},
    {"UNFO", "Modules", "", F::kUnsettled, "", R, I, D, nullptr, nullptr, nullptr},
    {"DLA", "DLAs", "Document Languages", F::kFixed, "LA", R, I, D, nullptr, nullptr, nullptr},
    {"OSLA", "OSLAs", "OS Languages", F::kFixed, "LA", R, I, D, nullptr, nullptr, nullptr},
    {"AILA", "AILAs", "Available Interface Languages", F::kFixed, "LA", R, I, D, nullptr, nullptr,
     nullptr},
    {"DSLA", "", "Shipping Languages", F::kInstall, "IN", _, _, _,
     "Shipping Language is not a part of Orvik", nullptr, nullptr},
    {"Remove Strings", "", "Remove Strings", F::kLanguage, "MSG", _, _, _, nullptr, nullptr,
     nullptr},
};

}  // namespace

const std::vector<KindInfo>& AllKindInfo() {
  return kKinds;
}

const KindInfo* FindKindInfo(const char* code) {
  for (const KindInfo& kind : kKinds) {
    if (strcasecmp(kind.code, code) == 0) return &kind;
  }
  return nullptr;
}

}  // namespace qv
