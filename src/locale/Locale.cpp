#include "locale/Locale.h"

#include <algorithm>
#include <memory>
#include <QCoreApplication>
#include <QLocale>
#include <QPointer>
#include <QTranslator>

#include "nk/nk_translate.h"
#include "nk/qt/nk_qt_string.h"

namespace Kivora {
namespace {

constexpr int kLanguageLength = 2;
constexpr int kLocaleLength = 5;
constexpr char kTranslationsDir[] = ":/Translations/";

struct LocaleState {
    QString current;
    QPointer<QTranslator> qtTranslator;  // the application owns both
    QPointer<QTranslator> ownTranslator;
    CLocalizedKeyMap keyMap;
};

LocaleState& State() {
    static LocaleState state;
    return state;
}

QString LanguageOf(const QString& code) {
    return code.left(kLanguageLength);
}

/// The first catalogue of this name that one of the folders holds; null for none.
std::unique_ptr<QTranslator> Load(const QString& name, const QStringList& folders) {
    auto translator = std::make_unique<QTranslator>(QCoreApplication::instance());
    const bool found = std::any_of(folders.begin(), folders.end(),
                                   [&](const QString& folder) { return translator->load(name, folder); });
    return found ? std::move(translator) : nullptr;
}

void Install(QPointer<QTranslator>& installed, std::unique_ptr<QTranslator> translator) {
    delete installed;
    if (translator) {
        installed = translator.release();
        QCoreApplication::installTranslator(installed);
    }
}

/// The user's own formats where the system speaks the language, else those of the locale.
QLocale FormatsOf(const QString& supported) {
    const QLocale system = QLocale::system();
    return LanguageOf(system.name()) == LanguageOf(supported) ? system : QLocale(supported);
}

NK::CString TranslateThroughCatalogue(const char* context, const char* sourceText, const char* comment) {
    return NK::FromQt(QCoreApplication::translate(context, sourceText, comment));
}

}  // namespace

QString MatchLocale(const QString& code) {
    QString match = "en_US";
    for (const char* supported : kSupportedLocales) {
        if (code.left(kLocaleLength) == QLatin1String(supported)) {
            return supported;
        }
        if (LanguageOf(code) == LanguageOf(supported)) {
            match = supported;
        }
    }
    return match;
}

QString LocaleDisplayName(const QString& code) {
    const QString language = LanguageOf(code);
    if (language == "en") {
        return QStringLiteral("English (United States)");
    }
    if (language == "ru") {
        return QCoreApplication::translate("Locale Names", "Russian");
    }
    return QStringLiteral("[Bad locale code]");
}

QString LocaleSuffix() {
    //: The locale suffix of file names, for example "_ru".
    const QString suffix = QCoreApplication::translate("Localization", "(null)");
    return suffix == "(null)" ? QString() : suffix;
}

const QString& GetCurrentLocale() {
    return State().current;
}

bool SetLocale(const QString& code, bool save) {
    LocaleState& state = State();
    const QString supported = MatchLocale(code);
    if (supported == state.current) {
        return true;
    }
    const bool saved = !save || SaveLocaleCode(NK::FromQt(code));
    state.current = supported.left(kMaxLocaleCodeLength);
    Install(state.qtTranslator, Load("qt_" + LanguageOf(supported).toLower(), {kTranslationsDir}));
    Install(state.ownTranslator, LoadCatalogue(supported));
    QLocale::setDefault(FormatsOf(supported));
    NK::SetTranslateFunction(TranslateThroughCatalogue);
    state.keyMap.Build();
    return saved;
}

std::unique_ptr<QTranslator> LoadCatalogue(const QString& code) {
    return Load("kivora_" + code, {kTranslationsDir, QCoreApplication::applicationDirPath()});
}

LocaleFileState InitLocale() {
    const LocaleFileState state = GetLocaleFileState();
    const NK::CString stored = LoadLocaleCode();
    if (stored.IsEmpty()) {
        SetLocale(QLocale::system().name(), state != LocaleFileState::kUnreadable);
    } else {
        SetLocale(NK::ToQt(stored), false);
    }
    return state;
}

const CLocalizedKeyMap& GetLocalizedKeyMap() {
    return State().keyMap;
}

}  // namespace Kivora
