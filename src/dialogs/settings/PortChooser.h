#pragma once

#include "common/Background.h"

#include <valvecell/ISerialPorts.h>

#include <QObject>

class QLineEdit;
class QToolButton;

/// Offers the ports of this machine in a button's menu, with what they say they are; the chosen one's name goes into a
/// field, where any other may be typed. It looks for them in the background. GUI thread.
class PortChooser : public QObject
{
    Q_OBJECT

public:
    /// Both outlive the chooser.
    PortChooser(QToolButton* button, QLineEdit* field);

    /// Who knows the ports; without one, the button is not shown.
    void setFinder(std::function<QVector<FoundPort>()> finder);
    void look();

private:
    void fill(const QVector<FoundPort>& ports);

    QToolButton* const m_button;
    QLineEdit* const m_field;
    std::function<QVector<FoundPort>()> m_finder;
    Background m_background{Background::AtEnd::Wait};
};
