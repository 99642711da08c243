#include "ui/MainDisplay.h"

#include <QEvent>
#include <QPainter>

#include "QtWidgets/skin/QClickableLabel.h"
#include "ui/parts/NoticeLine.h"

namespace {

using PanelText::kInk;

// Logical pixels from the display's top left corner.
constexpr QRect kPresetBox{59, 4, 205, 15};
constexpr QRect kModeBox{10, 108, 70, 14};
constexpr QRect kTempoBox{134, 108, 40, 14};
constexpr QRect kVelocityBox{268, 108, 40, 14};
constexpr QRect kSustainBox{378, 108, 40, 14};
constexpr QRect kNoticeBox{6, 106, 416, 17};
constexpr std::array<int, 2> kRowTops = {24, 65};
constexpr QRect kFamilyBox{38, 3, 250, 13};  // these five from the row's top
constexpr QRect kProgramBox{37, 16, 251, 23};
constexpr QRect kTranspositionBox{290, 10, 52, 24};
constexpr QRect kVolumeBox{366, 10, 52, 24};
constexpr std::array<QRect, 2> kAreas = {{{10, 24, 280, 40}, {10, 65, 280, 38}}};
constexpr QRectF kBadge{10, 3, 18, 32};
constexpr double kBadgeRadius = 2.0;
constexpr double kBadgeBaseline = 24.8;
constexpr double kBadgeMiddle = 18.8;
constexpr double kPaleBadge = 0.42;
constexpr double kRuleInk = 0.6;
constexpr double kShadowInk = 0.15;
constexpr double kStatusValueBaseline = 10.6;
constexpr double kStatusLabelBaseline = 118.2;
constexpr double kSustainGap = 6.0;

}  // namespace

MainDisplay::MainDisplay(QWidget* parent)
    : QWidget(parent),
      preset_(addLabel("display-preset-name", PanelText::kStatusValue, kPresetBox, 11.4, Qt::AlignLeft)),
      mode_(addLabel("display-mode", PanelText::kStatusValue, kModeBox, kStatusValueBaseline, Qt::AlignLeft)),
      tempo_(addLabel("display-tempo", PanelText::kStatusValue, kTempoBox, kStatusValueBaseline, Qt::AlignLeft)),
      velocity_(
          addLabel("display-velocity", PanelText::kStatusValue, kVelocityBox, kStatusValueBaseline, Qt::AlignLeft)),
      sustain_(addLabel("display-sustain", PanelText::kStatusValue, kSustainBox, kStatusValueBaseline, Qt::AlignRight)),
      notice_(new NoticeLine(this)) {
    notice_->setObjectName("display-notice");
    notice_->setGeometry(kNoticeBox);
    for (int index = 0; index < 2; ++index) {
        addRow(index, kRowTops[static_cast<std::size_t>(index)]);
    }
    nameControls();
}

PanelLabel* MainDisplay::addLabel(const char* objectName, const PanelTextStyle& style, const QRect& box,
                                  double baseline, Qt::Alignment alignment) {
    auto* label = new PanelLabel(style, this);
    label->setObjectName(objectName);
    label->setGeometry(box);
    label->setBaseline(baseline);
    label->setAlignment(alignment);
    label->setShadow(true);
    return label;
}

void MainDisplay::addRow(int index, int top) {
    const QString number = QString::number(index + 1);
    const auto name = [&](const char* pattern) { return QString(pattern).arg(number).toLatin1(); };
    Row& row = rows_[static_cast<std::size_t>(index)];
    row.family = addLabel(name("display-patch%1-line1"), PanelText::kPatchFamily, kFamilyBox.translated(0, top), 9.8,
                          Qt::AlignLeft);
    row.program = addLabel(name("display-patch%1-line2"), PanelText::kPatchName, kProgramBox.translated(0, top), 16.8,
                           Qt::AlignLeft);
    row.transposition = addLabel(name("display-transpose%1"), PanelText::kVoiceValue,
                                 kTranspositionBox.translated(0, top), 19, Qt::AlignRight);
    row.volume =
        addLabel(name("display-volume%1"), PanelText::kVoiceValue, kVolumeBox.translated(0, top), 19, Qt::AlignRight);
    row.area = new QClickableLabel(this);
    row.area->setObjectName(name("display-patch%1"));
    row.area->setGeometry(kAreas[static_cast<std::size_t>(index)]);
    row.present = true;
}

void MainDisplay::nameControls() {
    preset_->setAccessibleName(tr("Preset"));
    mode_->setAccessibleName(tr("Voice mode"));
    tempo_->setAccessibleName(tr("Tempo"));
    velocity_->setAccessibleName(tr("Last velocity"));
    sustain_->setAccessibleName(tr("Sustain pedal"));
    for (std::size_t index = 0; index < rows_.size(); ++index) {
        const Row& row = rows_[index];
        const int number = static_cast<int>(index) + 1;
        row.family->setAccessibleName(tr("Instrument family of voice %1").arg(number));
        row.program->setAccessibleName(tr("Patch of voice %1").arg(number));
        row.transposition->setAccessibleName(tr("Transposition of voice %1").arg(number));
        row.volume->setAccessibleName(tr("Volume of voice %1").arg(number));
        row.area->setAccessibleName(tr("Patch name of voice %1").arg(number));
        row.area->setToolTip(tr("Click to edit the patch, right click to choose one"));
    }
}

void MainDisplay::setGlass(const QPixmap* glass, const QColor& glassColor) {
    glass_ = glass;
    glassColor_ = glassColor;
    notice_->setGlassColor(glassColor);
    renewFace();
}

void MainDisplay::setVoice(int index, const Voice& voice) {
    Row& row = rows_.at(static_cast<std::size_t>(index));
    ShowFigure(row.family, voice.name.family);
    ShowFigure(row.program, voice.name.program);
    ShowFigure(row.transposition, voice.transposition);
    ShowFigure(row.volume, voice.volume);
    if (row.present != voice.present) {
        row.present = voice.present;
        renewFace();
    }
}

void MainDisplay::setSustain(const QString& text) {
    if (sustain_->text() != text) {
        ShowFigure(sustain_, text);
        renewFace();  // its legend stands beside the value
    }
}

void MainDisplay::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::LanguageChange) {
        nameControls();
        renewFace();
    }
}

void MainDisplay::renewFace() {
    face_ = QPixmap();
    update();
}

void MainDisplay::paintEvent(QPaintEvent* /*event*/) {
    const double ratio = devicePixelRatioF();
    const QSize pixels = size() * ratio;
    if (face_.size() != pixels || face_.devicePixelRatio() != ratio) {
        face_ = QPixmap(pixels);
        face_.setDevicePixelRatio(ratio);
        drawFace();
    }
    QPainter(this).drawPixmap(0, 0, face_);
}

void MainDisplay::drawFace() {
    face_.fill(Qt::transparent);
    QPainter painter(&face_);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    if (glass_ != nullptr) {
        painter.drawPixmap(rect(), *glass_);
    }
    painter.scale(panelScale(), panelScale());
    painter.setOpacity(kShadowInk);
    painter.translate(1, 1);
    drawLegends(painter, kInk, kInk);
    painter.translate(-1, -1);
    painter.setOpacity(1.0);
    drawLegends(painter, kInk, glassColor_);
}

void MainDisplay::drawLegends(QPainter& painter, const QColor& ink, const QColor& badgeText) const {
    struct Head {
        QString text;
        double right;
        double width;
    };
    const auto drawRow = [&](const std::vector<Head>& heads, double baseline) {
        std::vector<PanelText::InRoom> texts;
        texts.reserve(heads.size());
        for (const Head& head : heads) {
            texts.push_back({head.text, head.width});
        }
        const PanelTextStyle style =
            PanelText::kStatusLabel.Sized(PanelText::CommonSize(PanelText::kStatusLabel, texts));
        for (const Head& head : heads) {
            PanelText::Draw(painter, style, head.text, {head.right, baseline}, Qt::AlignRight, head.width);
        }
    };
    PanelText::Draw(painter, PanelText::kStatusLabel, tr("Preset"), {10, 15}, Qt::AlignLeft, 46);
    drawRow({{tr("Transpose"), 342, 76}, {tr("Volume"), 418, 72}}, 15);
    const double sustainWidth =
        PanelText::Fit(PanelText::kStatusValue, sustain_->text(), kSustainBox.width()).Width() + kSustainGap;
    drawRow({{tr("Tempo"), 128, 60}, {tr("Velocity"), 262, 84}, {tr("Sustain"), 418 - sustainWidth, 76}},
            kStatusLabelBaseline);

    QColor rule = ink;
    rule.setAlphaF(static_cast<float>(kRuleInk));
    painter.fillRect(QRectF(9, 21, 410, 1), rule);
    painter.fillRect(QRectF(9, 104, 410, 1), rule);
    for (int index = 0; index < 2; ++index) {
        drawBadge(painter, index, ink, badgeText);
    }
}

void MainDisplay::drawBadge(QPainter& painter, int index, const QColor& ink, const QColor& text) const {
    const auto row = static_cast<std::size_t>(index);
    const double top = kRowTops[row];
    painter.save();
    if (!rows_[row].present) {
        painter.setOpacity(painter.opacity() * kPaleBadge);
    }
    painter.setPen(Qt::NoPen);
    painter.setBrush(ink);
    painter.drawRoundedRect(kBadge.translated(0, top), kBadgeRadius, kBadgeRadius);
    PanelText::Draw(painter, PanelText::kVoiceBadge.Colored(text), QString::number(index + 1),
                    {kBadgeMiddle, top + kBadgeBaseline}, Qt::AlignHCenter, kBadge.width());
    painter.restore();
}
