#pragma once

#include <QDialog>

#include <memory>

namespace Ui {
class QAboutUI;
}

/// What the program is, in which versions of which libraries it runs, and under which licences. GUI thread.
class QAboutUI : public QDialog
{
    Q_OBJECT

public:
    explicit QAboutUI(QWidget* parent = nullptr);
    ~QAboutUI() override;

protected:
    void changeEvent(QEvent* event) override;

private:
    void fill();
    void copyVersions();

    std::unique_ptr<Ui::QAboutUI> m_ui;
};
