#include "engine/values/MidiBindings.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <string_view>
#include <utility>

namespace Kivora {

namespace {

constexpr const wchar_t* kHeading = L"; Controls of MIDI keyboards that work the panel: a section for each device.";
constexpr const wchar_t* kLatching = L"latching";

struct KindName {
    MidiControl::Kind kind;
    const wchar_t* name;
};
constexpr KindName kKinds[] = {{MidiControl::Kind::kController, L"Controller"},
                               {MidiControl::Kind::kNote, L"Note"},
                               {MidiControl::Kind::kProgram, L"Program"}};

NK::CString KeyOf(const MidiControl& control) {
    const auto* const kind = std::find_if(std::begin(kKinds), std::end(kKinds),
                                          [&](const KindName& name) { return name.kind == control.kind; });
    return NK::CString(kind->name) + L" " + NK::CString::FromInt(control.number) + L" on channel " +
           NK::CString::FromInt(control.channel + 1);
}

/// The words of a text, which blanks part.
std::vector<NK::CString> WordsOf(const NK::CString& text) {
    std::vector<NK::CString> words;
    std::wstring_view rest = text.View();
    while (!rest.empty()) {
        const auto* const end = std::find_if(rest.begin(), rest.end(), NK::CString::IsWhiteSpace);
        const auto length = static_cast<std::size_t>(end - rest.begin());
        if (length != 0) {
            words.emplace_back(rest.substr(0, length));
        }
        rest.remove_prefix(std::min(length + 1, rest.size()));
    }
    return words;
}

std::optional<std::uint8_t> ToNumber(const NK::CString& word, int least, int greatest) {
    constexpr std::uint32_t kMostDigits = 3;
    const std::wstring_view digits = word.View();
    const bool isPlain =
        word.GetLength() <= kMostDigits &&
        std::all_of(digits.begin(), digits.end(), [](wchar_t digit) { return digit >= L'0' && digit <= L'9'; });
    std::int32_t number = 0;
    if (!isPlain || !word.ToInt(number) || number < least || number > greatest) {
        return std::nullopt;
    }
    return static_cast<std::uint8_t>(number);
}

std::optional<MidiControl> ToControl(const NK::CString& key) {
    const std::vector<NK::CString> words = WordsOf(key);
    if (words.size() != 5 || words[2].CompareNoCase(L"on") != 0 || words[3].CompareNoCase(L"channel") != 0) {
        return std::nullopt;
    }
    const auto* const kind = std::find_if(std::begin(kKinds), std::end(kKinds),
                                          [&](const KindName& name) { return words[0].CompareNoCase(name.name) == 0; });
    const std::optional<std::uint8_t> number = ToNumber(words[1], 0, 127);
    const std::optional<std::uint8_t> channel = ToNumber(words[4], 1, 16);
    if (kind == std::end(kKinds) || !number || !channel) {
        return std::nullopt;
    }
    return MidiControl{kind->kind, static_cast<std::uint8_t>(*channel - 1), *number};
}

std::optional<MidiBinding> ToBinding(const NK::CString& device, const NK::CString& key, const NK::CString& value) {
    const std::optional<MidiControl> control = ToControl(key);
    const std::vector<NK::CString> words = WordsOf(value);
    if (!control || words.empty() || words.size() > 2 ||
        (words.size() == 2 && words[1].CompareNoCase(kLatching) != 0)) {
        return std::nullopt;
    }
    const std::optional<EPanelFunction> function = FindPanelFunction(words[0]);
    if (!function) {
        return std::nullopt;
    }
    return MidiBinding{device, *control, *function, words.size() == 2};
}

/// What is neither a header nor a key nor blank nor a comment.
bool IsNoLine(const NK::CString& line) {
    const std::wstring_view text = line.View();
    if (text.starts_with(L'[')) {
        return !text.ends_with(L']');
    }
    constexpr std::wstring_view kComments = L"'#;";
    return !line.Trimmed().IsEmpty() && kComments.find(text.front()) == std::wstring_view::npos &&
           text.find(L'=') == std::wstring_view::npos;
}

bool CanBeBound(const MidiBinding& binding) {
    return !binding.device.IsEmpty() && binding.control.channel < 16 && binding.control.number < 128 &&
           !binding.control.IsReserved() &&
           (!IsValue(binding.function) || binding.control.kind == MidiControl::Kind::kController);
}

}  // namespace

const MidiBinding* MidiBindings::Find(const NK::CString& device, const MidiControl& control) const {
    const auto found = std::find_if(bindings_.begin(), bindings_.end(), [&](const MidiBinding& binding) {
        return binding.control == control && binding.device == device;
    });
    return found == bindings_.end() ? nullptr : &*found;
}

bool MidiBindings::Bind(MidiBinding binding) {
    binding.device = KeepName(binding.device);
    if (!CanBeBound(binding)) {
        return false;
    }
    const auto gives = [&](const MidiBinding& other) {
        return other.device == binding.device &&
               (other.control == binding.control || other.function == binding.function);
    };
    const auto given = std::count_if(bindings_.begin(), bindings_.end(), gives);
    if (bindings_.size() - static_cast<std::size_t>(given) >= kMost) {
        return false;
    }
    std::erase_if(bindings_, gives);
    bindings_.push_back(std::move(binding));
    return true;
}

void MidiBindings::Clear(EPanelFunction function) {
    std::erase_if(bindings_, [function](const MidiBinding& binding) { return binding.function == function; });
}

void MidiBindings::SetLatching(EPanelFunction function, bool latches) {
    for (MidiBinding& binding : bindings_) {
        if (binding.function == function && binding.control.kind == MidiControl::Kind::kController) {
            binding.latches = latches;
        }
    }
}

void MidiBindings::TakeOver(const MidiBindings& others) {
    std::erase_if(bindings_, [&others](const MidiBinding& binding) {
        return std::any_of(others.bindings_.begin(), others.bindings_.end(),
                           [&](const MidiBinding& other) { return other.device == binding.device; });
    });
    for (const MidiBinding& other : others.bindings_) {
        Bind(other);
    }
}

NK::CString MidiBindings::KeepName(const NK::CString& name) {
    NK::CString kept = name;
    for (wchar_t control = 0; control < L' '; ++control) {
        kept.Replace(control, L' ');
    }
    kept.Replace(L'\x7F', L' ');
    return kept.Trimmed().Left(kLongestName).Trimmed();
}

MidiBindings MidiBindings::Read(const NK::CIniFile& file, std::size_t& refused) {
    MidiBindings read;
    refused = static_cast<std::size_t>(std::count_if(file.begin(), file.end(), IsNoLine));
    file.VisitKeys([&](const NK::CString& section, const NK::CString& key, const NK::CString& value) {
        std::optional<MidiBinding> binding = ToBinding(KeepName(section), key, value);
        // One that takes the place of another would lose that.
        const bool isNew =
            binding && std::none_of(read.bindings_.begin(), read.bindings_.end(), [&](const MidiBinding& other) {
                return other.device == binding->device &&
                       (other.control == binding->control || other.function == binding->function);
            });
        if (!isNew || !read.Bind(std::move(*binding))) {
            ++refused;
        }
    });
    return read;
}

void MidiBindings::Write(NK::CIniFile& file) const {
    file.Push(kHeading);
    for (const MidiBinding& binding : bindings_) {
        file.SelectOrAddSection(binding.device, true);
    }
    // A new key goes directly under its header.
    for (auto binding = bindings_.rbegin(); binding != bindings_.rend(); ++binding) {
        file.SelectSection(binding->device, true);
        file.SetString(KeyOf(binding->control), NK::CString(GetFileName(binding->function)) +
                                                    (binding->latches ? NK::CString(L" ") + kLatching : NK::CString()));
    }
}

}  // namespace Kivora
