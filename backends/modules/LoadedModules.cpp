#include "backends/modules/LoadedModules.h"

#include <dlfcn.h>
#include <unistd.h>

#include <optional>
#include <string_view>
#include <system_error>

#include "backends/modules/FileTrust.h"
#include "resources/ObjectFile.h"
#include "text/SeededTextHash.h"

namespace TkPPDUpdating {

namespace {

namespace fs = std::filesystem;

constexpr const char* kEntry = "TkPPDUpdatingModule";

/// The folder of this project's own modules; empty when this code's place is not known.
fs::path folderOfOwnModules() {
    const ObjectFile object = ObjectFile::ofThisCode();
    return object.path.empty() ? fs::path()
                               : fs::path(object.path).parent_path() /
                                     (object.isProgram ? TKPPDUPDATING_WAY_FROM_PROGRAM_TO_MODULES
                                                       : TKPPDUPDATING_WAY_FROM_LIBRARY_TO_MODULES);
}

/// What the loader says when it cannot load that file. It is safe from several threads: its text
/// belongs to this one.
void* opened(const fs::path& path, std::string& error) {
    void* const handle = ::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
    if (!handle) {
        error = ::dlerror();
    }
    return handle;
}

const Module* entryOf(void* handle) {
    return static_cast<const Module*>(::dlsym(handle, kEntry));
}

/// "MAJOR.MINOR" of "MAJOR.MINOR.PATCH".
std::string_view seriesOf(std::string_view version) {
    return version.substr(0, version.rfind('.'));
}

}  // namespace

const Module* ownModule(const std::string& name, std::string& error) {
    const fs::path folder = folderOfOwnModules();
    if (folder.empty()) {
        error = "the library's own folder is not known";
        return nullptr;
    }
    void* const handle = opened(folder / (name + ".so"), error);
    if (!handle) {
        error.insert(0, "its module cannot be loaded: ");
        return nullptr;
    }
    const Module* const module = entryOf(handle);
    if (!module || std::string_view(module->version) != libraryVersion()) {
        error = "the module \"" + name + "\" is not of this version";
        return nullptr;
    }
    module->shareHashSeeds(SeededTextHash::seeds());
    return module;
}

const Module* addedModule(const std::string& path, std::string& error) {
    std::error_code code;
    const fs::path file = fs::canonical(path, code);
    if (code) {
        error = code.message();
        return nullptr;
    }
    if (const auto reason = reasonNotToTrust(file, ::geteuid())) {
        error = *reason;
        return nullptr;
    }
    void* const handle = opened(file, error);
    if (!handle) {
        const std::string place = file.string() + ": ";
        error =
            "cannot be loaded: " + (error.starts_with(place) ? error.substr(place.size()) : error);
        return nullptr;
    }
    const Module* const module = entryOf(handle);
    if (!module) {
        error = std::string("is no module of TkPPDUpdating: it has no ") + kEntry;
        return nullptr;
    }
    if (seriesOf(module->version) != seriesOf(libraryVersion())) {
        error = std::string("was built for version ") + module->version + ", and this is " +
                libraryVersion() + "; build it anew";
        return nullptr;
    }
    module->shareHashSeeds(SeededTextHash::seeds());
    return module;
}

fs::path folderOfAddedModules() {
    const fs::path own = folderOfOwnModules();
    return own.empty() ? own : (own.lexically_normal().parent_path() / "updaters");
}

}  // namespace TkPPDUpdating
