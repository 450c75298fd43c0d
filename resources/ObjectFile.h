#pragma once

#include <string>

namespace TkPPDUpdating {

/// The file that code runs from: a program, or a shared object.
struct ObjectFile {
    /// Absolute; empty when it is not known.
    std::string path;
    bool isProgram = false;

    /// The file that the code of this library runs from: the shared library, or, with the static
    /// one, the program or shared object that it is linked into.
    static ObjectFile ofThisCode();

    /// The program that runs, as the kernel knows it; empty when unknown.
    static std::string pathOfThisProgram();
};

}  // namespace TkPPDUpdating
