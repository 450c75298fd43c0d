// Loads the object of the given path, goes elsewhere, and says where the object finds its data.
#include <dlfcn.h>
#include <unistd.h>

#include <iostream>

int main(int argumentCount, char** arguments) {
    void* const object = argumentCount == 2 ? ::dlopen(arguments[1], RTLD_NOW) : nullptr;
    void* const function = object ? ::dlsym(object, "resourceFolderPath") : nullptr;
    if (!function || ::chdir("/") != 0) {
        return 1;
    }
    std::cout << reinterpret_cast<const char* (*)()>(function)() << '\n';
}
