// A picture of the computer's keyboard.
#pragma once

#include <map>
#include <QSet>
#include <QString>
#include <QWidget>

/// The four rows of a US keyboard's main block, with the user's letters; keys light up and are marked. [gui]
class KeyboardFigure : public QWidget {
    Q_OBJECT

public:
    explicit KeyboardFigure(QWidget* parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

    /// By native scan code.
    void setKeyTops(const std::map<quint32, QString>& tops);
    void setKeys(const QSet<quint32>& lit, const QSet<quint32>& marked);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    std::map<quint32, QString> tops_;
    QSet<quint32> lit_;
    QSet<quint32> marked_;
};
