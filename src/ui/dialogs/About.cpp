#include "ui/dialogs/About.h"

#include <QCoreApplication>
#include <QEvent>
#include <QFile>
#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QPushButton>
#include <QTextBrowser>
#include <QVBoxLayout>

#include "locale/Locale.h"
#include "ui/parts/Mnemonics.h"

namespace {
constexpr QSize kPicture(480, 150);
constexpr int kLeastCreditsHeight = 60;
constexpr QSize kLegalSize(640, 520);
}  // namespace

kivoraAbout::kivoraAbout(QWidget* parent)
    : FittedDialog(parent),
      version_(new QLabel(this)),
      credits_(new QTextBrowser(this)),
      webSiteButton_(new QPushButton(this)),
      legalButton_(new QPushButton(this)),
      closeButton_(new QPushButton(this)) {
    setObjectName("kivoraAboutClass");
    setWindowIcon(QIcon(":/Resources/Kivora.ico"));
    auto* picture = new QLabel(this);
    picture->setObjectName("picture");
    picture->setPixmap(QIcon(":/Resources/About.png").pixmap(kPicture));  // an icon knows the doubled file
    version_->setObjectName("version");
    version_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    version_->setMargin(8);
    credits_->setObjectName("credits");
    credits_->setOpenExternalLinks(true);
    credits_->setMinimumHeight(kLeastCreditsHeight);
    webSiteButton_->setObjectName("webSiteButton");
    legalButton_->setObjectName("legalButton");
    closeButton_->setObjectName("closeButton");
    closeButton_->setDefault(true);

    auto* buttons = new QHBoxLayout;
    buttons->setContentsMargins(8, 0, 8, 8);
    buttons->addWidget(webSiteButton_);
    buttons->addWidget(legalButton_);
    buttons->addStretch();
    buttons->addWidget(closeButton_);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(picture, 0, Qt::AlignHCenter);
    layout->addWidget(version_);
    layout->addWidget(credits_);
    layout->addLayout(buttons);
    credits_->setMinimumWidth(kPicture.width());

    connect(webSiteButton_, &QPushButton::clicked, this, [this] { emit webSiteWanted(webSite()); });
    connect(legalButton_, &QPushButton::clicked, this, &kivoraAbout::showLegalInformation);
    connect(closeButton_, &QPushButton::clicked, this, &QDialog::accept);
    retranslate();
    closeButton_->setFocus();
}

QString kivoraAbout::webSite() {
    return "https://brennholt.example/kivora/" + Kivora::MatchLocale(Kivora::GetCurrentLocale()).left(2) + "/";
}

QString kivoraAbout::creditsFile() {
    const QString localized = ":/Resources/Authors" + Kivora::LocaleSuffix() + ".html";
    return QFile::exists(localized) ? localized : QStringLiteral(":/Resources/Authors.html");
}

void kivoraAbout::showLegalInformation() {
    legalinfo(this).exec();
}

void kivoraAbout::changeEvent(QEvent* event) {
    if (event->type() == QEvent::LanguageChange) {
        retranslate();
    }
    FittedDialog::changeEvent(event);
}

void kivoraAbout::retranslate() {
    setWindowTitle(tr("About"));
    version_->setText(
        QString("%1 %2 (%3)")
            .arg(tr("Version:"), QCoreApplication::applicationVersion(), QStringLiteral(KIVORA_BUILD_DATE)));
    credits_->setSource(QUrl("qrc" + creditsFile()));
    credits_->setAccessibleName(tr("Credits"));
    webSiteButton_->setText(tr("Web Site"));
    legalButton_->setText(tr("Copyright and Library Information"));
    closeButton_->setText(tr("Close"));
    AssignMnemonics(*this);
}

legalinfo::legalinfo(QWidget* parent)
    : FittedDialog(parent), text_(new QTextBrowser(this)), closeButton_(new QPushButton(this)) {
    setObjectName("legalinfoClass");
    text_->setObjectName("text");
    text_->setOpenExternalLinks(true);
    text_->setSource(QUrl("qrc:/Resources/Legal.html"));
    closeButton_->setObjectName("closeButton");
    closeButton_->setDefault(true);
    connect(closeButton_, &QPushButton::clicked, this, &QDialog::accept);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(text_);
    layout->addWidget(closeButton_, 0, Qt::AlignRight);
    resize(kLegalSize);
    retranslate();
}

void legalinfo::changeEvent(QEvent* event) {
    if (event->type() == QEvent::LanguageChange) {
        retranslate();
    }
    FittedDialog::changeEvent(event);
}

void legalinfo::retranslate() {
    setWindowTitle(tr("Legal Information"));
    text_->setAccessibleName(windowTitle());
    closeButton_->setText(tr("Close"));
    AssignMnemonics(*this);
}
