// Puts PNG pictures into one icon file: makeicon <icon.ico> <width> <picture.png> [<width> <picture.png>] ...
//
// The ICO format as Windows has it since Vista: a directory of 16 bytes for each picture, then the PNG files whole.
#include <cstdint>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>
#include <vector>

namespace {

void Append(std::string& out, std::uint32_t value, int bytes) {
    for (int i = 0; i < bytes; ++i) {
        out += static_cast<char>(value >> (8 * i) & 0xFF);
    }
}

}  // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    if (arguments.size() < 3 || arguments.size() % 2 == 0) {
        std::cerr << "makeicon <icon.ico> <width> <picture.png> ...\n";
        return 2;
    }
    const std::size_t count = (arguments.size() - 1) / 2;
    constexpr std::size_t kHeaderSize = 6;
    constexpr std::size_t kEntrySize = 16;
    std::string directory;
    Append(directory, 0, 2);
    Append(directory, 1, 2);  // an icon
    Append(directory, static_cast<std::uint32_t>(count), 2);
    std::string pictures;
    for (std::size_t i = 0; i < count; ++i) {
        const std::uint32_t width = static_cast<std::uint32_t>(std::stoul(arguments[1 + 2 * i]));
        std::ifstream file(arguments[2 + 2 * i], std::ios::binary);
        const std::string picture{std::istreambuf_iterator<char>(file), {}};
        if (picture.empty()) {
            std::cerr << "makeicon: cannot read " << arguments[2 + 2 * i] << "\n";
            return 1;
        }
        Append(directory, width & 0xFF, 1);  // 0 stands for 256
        Append(directory, width & 0xFF, 1);
        Append(directory, 0, 2);   // no palette
        Append(directory, 1, 2);   // planes
        Append(directory, 32, 2);  // bits a pixel
        Append(directory, static_cast<std::uint32_t>(picture.size()), 4);
        Append(directory, static_cast<std::uint32_t>(kHeaderSize + kEntrySize * count + pictures.size()), 4);
        pictures += picture;
    }
    std::ofstream icon(arguments[0], std::ios::binary);
    icon << directory << pictures;
    icon.close();
    return icon ? 0 : 1;
}
