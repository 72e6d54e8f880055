#pragma once

#include <QWidget>

#include <memory>

struct StationReading;

namespace Ui {
class StationView;
}

/// One station on the screen: its model, its picture and its last reading.
class StationView : public QWidget
{
    Q_OBJECT

public:
    explicit StationView(QWidget* parent = nullptr);
    ~StationView() override;

    void setStation(int number);
    void setImage(const QImage& image);
    void setModelLabel(const QString& richText);
    void setReading(const StationReading& reading);
    void hideReading();

signals:
    void sgImageScale(qreal scale);

private:
    std::unique_ptr<Ui::StationView> m_ui;
};
