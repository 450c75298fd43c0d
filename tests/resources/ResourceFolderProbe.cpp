// Says where the library that this program is linked with finds its data, for a test that moves
// the program.
#include <iostream>

#include "resources/ResourceFolder.h"

int main() {
    std::cout << TkPPDUpdating::ResourceFolder::path().value_or("") << '\n';
}
