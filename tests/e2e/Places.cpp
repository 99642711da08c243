#include "e2e/Places.h"

namespace {

/// Every place that plays, by key code, with its note; and among them all others of the four rows, which play nothing:
/// those of European, Brazilian and Japanese keyboards too.
struct TPlace {
    std::uint8_t code;
    int note;
};
constexpr int kSilent = 0;
constexpr TPlace kPlaces[] = {
    {49, kSilent}, {10, kSilent}, {11, 73},      {12, 75},      {13, kSilent}, {14, 78},       {15, 80},      {16, 82},
    {17, kSilent}, {18, 85},      {19, 87},      {20, kSilent}, {21, 90},      {132, kSilent}, {24, 72},      {25, 74},
    {26, 76},      {27, 77},      {28, 79},      {29, 81},      {30, 83},      {31, 84},       {32, 86},      {33, 88},
    {34, 89},      {35, 91},      {38, kSilent}, {39, 61},      {40, 63},      {41, kSilent},  {42, 66},      {43, 68},
    {44, 70},      {45, kSilent}, {46, 73},      {47, 75},      {48, kSilent}, {51, kSilent},  {94, kSilent}, {52, 60},
    {53, 62},      {54, 64},      {55, 65},      {56, 67},      {57, 69},      {58, 71},       {59, 72},      {60, 74},
    {61, 76},      {97, kSilent},
};

}  // namespace

const std::vector<TPlacedLayout> kPlacedLayouts = {{"us"}, {"gb"}, {"de"}, {"fr"}, {"es"},           {"it"},
                                                   {"br"}, {"pt"}, {"se"}, {"cz"}, {"pl"},           {"tr"},
                                                   {"ru"}, {"ua"}, {"gr"}, {"il"}, {"us", "dvorak"}, {"us", "colemak"},
                                                   {"jp"}};

std::vector<std::string> PlacesTest::MessagesOf(int note, const char* velocity) {
    const std::string data = QString::number(note, 16).toUpper().toStdString();
    return {"90 " + data + " " + velocity, "80 " + data + " 00"};
}

void PlacesTest::ExpectAllPlaces(const char* velocity, bool asTyped) {
    for (const TPlace& place : kPlaces) {
        if (asTyped && place.code == PlaceCodes::kISO) {
            continue;
        }
        Move(place.code);
        if (place.note != kSilent) {
            ExpectNotes(MessagesOf(place.note, velocity), place.code);
        }
    }
    Move(PlaceCodes::kX);  // whatever the silent keys had played would stand before this
    ExpectNotes(MessagesOf(62, velocity), PlaceCodes::kX);
}

void PlacesTest::Move(std::uint8_t code) {
    instrument.MoveKey(code, true);
    instrument.MoveKey(code, false);
}

void PlacesTest::ExpectNotes(const std::vector<std::string>& expected, int code) {
    ASSERT_TRUE(instrument.WaitForNoteMessages(seen_ + expected.size())) << "key " << code;
    const std::vector<std::string> all = instrument.GetNoteMessages();
    EXPECT_EQ(std::vector<std::string>(all.begin() + static_cast<std::ptrdiff_t>(seen_), all.end()), expected)
        << "key " << code;
    seen_ = all.size();
}

QImage PlacesTest::GrabHints() {
    const QString path = instrument.GetDataDir() + "/hints.png";
    EXPECT_TRUE(instrument.SavePicture(path));
    const QImage screen(path);
    return screen.copy(0, screen.height() / 3, screen.width(), screen.height() / 3);
}
