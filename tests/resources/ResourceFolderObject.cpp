// Tells the program that has loaded this object where its code finds its data.
#include "resources/ResourceFolder.h"

extern "C" const char* resourceFolderPath() {
    static const std::string path = TkPPDUpdating::ResourceFolder::path().value_or("");
    return path.c_str();
}
