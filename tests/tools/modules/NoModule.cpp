// A shared object that is no module, for AddedModules_test.cpp.
extern "C" __attribute__((visibility("default"))) int anything();

extern "C" int anything() {
    return 0;
}
