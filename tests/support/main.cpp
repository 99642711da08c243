// The main function of tests that need no application object. It stands in a library, so a program that brings one of
// its own does not get it.
#include "support/TestMain.h"

int main(int argc, char** argv) {
    return KivoraTestMain(argc, argv);
}
