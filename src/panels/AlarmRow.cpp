#include "panels/AlarmRow.h"

#include "panels/ElidedLabel.h"

#include <QDateTime>
#include <QHBoxLayout>
#include <QPushButton>

AlarmRow::AlarmRow(QWidget* parent)
    : QWidget(parent)
    , m_time(new QLabel)
    , m_cause(new ElidedLabel)
    , m_remedy(new ElidedLabel)
    , m_place(new QPushButton)
{
    m_time->setObjectName(QStringLiteral("timeLabel"));
    m_cause->setObjectName(QStringLiteral("textLabel"));
    m_remedy->setObjectName(QStringLiteral("remedyLabel"));
    m_place->setObjectName(QStringLiteral("placeButton"));
    for (ElidedLabel* label : {m_cause, m_remedy})
        label->setTextFormat(Qt::PlainText);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(12);
    row->addWidget(m_time);
    row->addWidget(m_cause, 4);
    row->addWidget(m_remedy, 5);
    row->addWidget(m_place);
    connect(m_place, &QPushButton::clicked, this, [this] { emit actionWanted(m_action); });
}

void AlarmRow::show(const QDateTime& since, const QString& cause, const QString& remedy, const QString& action,
                    const QString& place)
{
    m_time->setText(since.toString(QStringLiteral("hh:mm:ss")));
    m_cause->setText(cause);
    m_remedy->setText(remedy);
    m_place->setText(place);
    m_place->setVisible(!place.isEmpty());
    m_action = action;
}
