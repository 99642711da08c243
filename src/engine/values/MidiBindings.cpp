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

std::optional<MidiBinding> ToBinding(const NK::CString& device, const MidiControl& control, const NK::CString& value) {
    const std::vector<NK::CString> words = WordsOf(value);
    if (words.empty() || words.size() > 2 || (words.size() == 2 && words[1].CompareNoCase(kLatching) != 0)) {
        return std::nullopt;
    }
    const std::optional<EPanelFunction> function = FindPanelFunction(words[0]);
    if (!function) {
        return std::nullopt;
    }
    return MidiBinding{device, control, *function, words.size() == 2};
}

NK::CString ToValue(const MidiBinding& binding) {
    return NK::CString(GetFileName(binding.function)) +
           (binding.latches ? NK::CString(L" ") + kLatching : NK::CString());
}

/// What another version may have written where a binding stands: words of letters and digits.
bool IsInWords(const NK::CString& value) {
    const std::wstring_view text = value.View();
    const auto isPlain = [](wchar_t character) {
        return (character >= L'0' && character <= L'9') || (character >= L'A' && character <= L'Z') ||
               (character >= L'a' && character <= L'z') || NK::CString::IsWhiteSpace(character);
    };
    return !value.Trimmed().IsEmpty() && std::all_of(text.begin(), text.end(), isPlain);
}

/// A line of the file, by itself.
struct Line {
    enum class Kind {
        kNothing,  ///< blank, or a comment
        kHeader,
        kBinding,
        kDamage,
    };

    static Line Of(const NK::CString& line) {
        constexpr std::wstring_view kComments = L"'#;";
        const std::wstring_view text = line.View();
        const NK::CString trimmed = line.Trimmed();
        if (text.starts_with(L'[')) {
            return text.ends_with(L']')
                       ? Line{Kind::kHeader, MidiBindings::KeepName(NK::CString(text.substr(1, text.size() - 2))), {}}
                       : Line{Kind::kDamage, {}, {}};
        }
        if (trimmed.IsEmpty() || kComments.find(trimmed[0]) != std::wstring_view::npos) {
            return {Kind::kNothing, {}, {}};
        }
        const std::size_t equals = text.find(L'=');
        const auto control =
            equals == std::wstring_view::npos ? std::nullopt : ToControl(NK::CString(text.substr(0, equals)));
        return control ? Line{Kind::kBinding, NK::CString(text.substr(equals + 1)), *control}
                       : Line{Kind::kDamage, {}, {}};
    }

    Kind kind;
    NK::CString text;  ///< of a header the device; of a binding what stands behind the control
    MidiControl control;
};

/// Behind the last binding of the device's section, or its header; a section is added where there is none.
std::uint32_t FindPlaceIn(NK::CIniFile& file, const NK::CString& device) {
    std::uint32_t place = 0;
    bool isIts = false;
    for (std::uint32_t index = 0; index < file.GetSize(); ++index) {
        const Line line = Line::Of(file[index]);
        if (line.kind == Line::Kind::kHeader) {
            isIts = place == 0 && line.text == device;
        }
        if (isIts && line.kind != Line::Kind::kNothing) {
            place = index + 1;
        }
    }
    if (place == 0) {
        file.SelectOrAddSection(device, true);
        place = file.GetSize();
    }
    return place;
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

void MidiBindings::Unbind(const MidiBinding& binding) {
    std::erase(bindings_, binding);
}

void MidiBindings::SetLatching(EPanelFunction function, bool latches) {
    for (MidiBinding& binding : bindings_) {
        if (binding.function == function && binding.control.kind == MidiControl::Kind::kController) {
            binding.latches = latches;
        }
    }
}

std::size_t MidiBindings::TakeOver(const MidiBindings& others) {
    std::erase_if(bindings_, [&others](const MidiBinding& binding) {
        return std::any_of(others.bindings_.begin(), others.bindings_.end(),
                           [&](const MidiBinding& other) { return other.device == binding.device; });
    });
    return static_cast<std::size_t>(std::count_if(others.bindings_.begin(), others.bindings_.end(),
                                                  [this](const MidiBinding& other) { return Bind(other); }));
}

NK::CString MidiBindings::KeepName(const NK::CString& name) {
    NK::CString kept = name;
    for (wchar_t control = 0; control < L' '; ++control) {
        kept.Replace(control, L' ');
    }
    kept.Replace(L'\x7F', L' ');
    return kept.Trimmed().Left(kLongestName).Trimmed();
}

MidiBindings MidiBindings::Read(const NK::CIniFile& file, Refused& refused) {
    MidiBindings read;
    refused = {};
    NK::CString device;
    for (const NK::CString& text : file) {
        const Line line = Line::Of(text);
        switch (line.kind) {
            case Line::Kind::kNothing:
                break;
            case Line::Kind::kHeader:
                device = line.text;
                break;
            case Line::Kind::kDamage:
                device = text.View().starts_with(L'[') ? NK::CString() : device;
                ++refused.damaged;
                break;
            case Line::Kind::kBinding:
                if (std::optional<MidiBinding> binding = ToBinding(device, line.control, line.text)) {
                    // One that takes the place of another would lose that.
                    const bool isBound = !read.HasPlaceOf(*binding) && read.Bind(std::move(*binding));
                    refused.damaged += isBound ? 0 : 1;
                } else {
                    ++(!device.IsEmpty() && IsInWords(line.text) ? refused.unknown : refused.damaged);
                }
                break;
        }
    }
    return read;
}

bool MidiBindings::HasPlaceOf(const MidiBinding& binding) const {
    return std::any_of(bindings_.begin(), bindings_.end(), [&binding](const MidiBinding& other) {
        return other.device == binding.device &&
               (other.control == binding.control || other.function == binding.function);
    });
}

void MidiBindings::Write(NK::CIniFile& file) const {
    if (file.IsEmpty()) {
        file.Push(kHeading);
    }
    std::vector<MidiBinding> missing = bindings_;
    NK::CString device;
    for (std::uint32_t index = 0; index < file.GetSize();) {
        const Line line = Line::Of(file[index]);
        bool stays = true;
        if (line.kind == Line::Kind::kHeader) {
            device = line.text;
        } else if (line.kind == Line::Kind::kBinding) {
            const std::optional<MidiBinding> written = ToBinding(device, line.control, line.text);
            const MidiBinding* const bound = Find(device, line.control);
            stays = bound != nullptr ? written == *bound : !written;
        }
        if (stays) {
            if (line.kind == Line::Kind::kBinding) {
                std::erase_if(missing, [&](const MidiBinding& binding) {
                    return binding.device == device && binding.control == line.control;
                });
            }
            ++index;
        } else {
            file.Remove(index);
        }
    }
    for (const MidiBinding& binding : missing) {
        file.Insert(FindPlaceIn(file, binding.device), KeyOf(binding.control) + L"=" + ToValue(binding));
    }
}

}  // namespace Kivora
