#pragma once

#include <valvecell/ICameraDiscovery.h>

#include <QTimer>
#include <QWidget>

#include <memory>

namespace Ui {
class FoundCameras;
}

/// The cameras that were found on network and bus, to choose one from. The search goes on in the background. GUI
/// thread.
class FoundCameras : public QWidget
{
    Q_OBJECT

public:
    explicit FoundCameras(QWidget* parent = nullptr);
    ~FoundCameras() override;

    /// Null: the list is hidden. `discovery` outlives the widget.
    void setDiscovery(ICameraDiscovery* discovery);

public slots:
    void search();

signals:
    void chosen(const FoundCamera& camera);

protected:
    void changeEvent(QEvent* event) override;

private:
    enum Column { Type, Vendor, Model, Serial, UserName, Address, Note, columns };

    void look();
    void fill();
    void setRow(int row, const FoundCamera& camera);
    static QString noteOf(const FoundCamera& camera);
    void showState();
    void choose();

    std::unique_ptr<Ui::FoundCameras> m_ui;
    ICameraDiscovery* m_discovery = nullptr;
    QVector<FoundCamera> m_found;
    QTimer m_tick;
    bool m_searching = false;
    bool m_searched = false;
};
