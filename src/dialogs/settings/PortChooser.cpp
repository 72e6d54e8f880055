#include "dialogs/settings/PortChooser.h"

#include <QFileInfo>
#include <QLineEdit>
#include <QMenu>
#include <QToolButton>

namespace {

/// "FT232R USB UART, FTDI, A50285BI (ttyUSB0)"; the name itself where the device says nothing.
QString captionOf(const FoundPort& port)
{
    const QString device = QFileInfo(port.device).fileName();
    const QString what = port.description.isEmpty() ? QFileInfo(port.name).fileName() : port.description;
    QString caption = what == device ? what : QStringLiteral("%1 (%2)").arg(what, device);
    return caption.replace(QLatin1Char('&'), QLatin1String("&&"));
}

} // namespace

PortChooser::PortChooser(QToolButton* button, QLineEdit* field)
    : QObject(button)
    , m_button(button)
    , m_field(field)
{
    auto* menu = new QMenu(button);
    menu->setToolTipsVisible(true);
    button->setMenu(menu);
    button->hide();
    connect(menu, &QMenu::aboutToShow, this, &PortChooser::look);
    connect(menu, &QMenu::triggered, this, [this](const QAction* choice) {
        m_field->setText(choice->data().toString());
        m_field->setFocus();
    });
}

void PortChooser::setFinder(std::function<QVector<FoundPort>()> finder)
{
    m_finder = std::move(finder);
    m_button->setVisible(m_finder != nullptr);
}

void PortChooser::look()
{
    m_background.clear();
    if (m_finder)
        m_background.run(m_finder, [this](const QVector<FoundPort>& ports) { fill(ports); });
}

void PortChooser::fill(const QVector<FoundPort>& ports)
{
    QMenu* menu = m_button->menu();
    menu->clear();
    for (const FoundPort& port : ports) {
        QAction* choice = menu->addAction(captionOf(port));
        choice->setData(port.name);
        choice->setToolTip(port.name);
    }
    if (ports.isEmpty())
        menu->addAction(tr("没有找到串口"))->setEnabled(false);
}
