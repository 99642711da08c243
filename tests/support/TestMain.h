// For a test program with a main function of its own, such as one that needs a QApplication.
#pragma once

/// Runs the program's tests with the fatal log in force; returns the exit code.
int KivoraTestMain(int argc, char** argv);
