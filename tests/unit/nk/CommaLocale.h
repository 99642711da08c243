// Puts a locale whose decimal separator is the comma in force.
#pragma once

#include <gtest/gtest.h>
#include <stdlib.h>

#include <clocale>
#include <cstdio>
#include <fstream>
#include <string>

#include "unit/nk/TempFolder.h"

namespace KivoraTest {

/// A test in whose process "1.5" is printed as "1,5". Takes an installed locale, else compiles one with localedef,
/// which needs the sources of Debian's package "locales".
class CCommaLocaleTest : public CTempFolderTest {
protected:
    void SetUp() override {
        for (const char* const name : {"de_DE.UTF-8", "de_DE.utf8", "ru_RU.UTF-8", "fr_FR.UTF-8"}) {
            if (std::setlocale(LC_NUMERIC, name) != nullptr) {
                break;
            }
        }
        if (!IsComma()) {
            Compile();
        }
        ASSERT_TRUE(IsComma()) << "no locale with a decimal comma can be had; install the package \"locales\"";
    }
    void TearDown() override { std::setlocale(LC_NUMERIC, "C"); }

    static bool IsComma() {
        char text[16];
        std::snprintf(text, sizeof text, "%.1f", 1.5);
        return std::string(text) == "1,5";
    }

private:
    void Compile() {
        std::ofstream(Native("source")) << "LC_NUMERIC\ndecimal_point \",\"\nthousands_sep \".\"\ngrouping 3;3\n"
                                           "END LC_NUMERIC\n";
        const std::string command =
            "localedef -c -i " + Native("source").string() + " " + Native("comma").string() + " >/dev/null 2>&1";
        // Its exit status tells of the categories that are left out on purpose.
        static_cast<void>(!std::system(command.c_str()));
        setenv("LOCPATH", folder_.GetPath().c_str(), 1);
        std::setlocale(LC_NUMERIC, "comma");
    }
};

}  // namespace KivoraTest
