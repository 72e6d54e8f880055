#pragma once

#include <QDialog>

#include <memory>

namespace Ui {
class QHelpUI;
}

/// The user guide, in the program's language, with its contents and a search. GUI thread.
class QHelpUI : public QDialog
{
    Q_OBJECT

public:
    /// `folder` holds the guides, in Markdown, with their pictures.
    explicit QHelpUI(const QString& folder, QWidget* parent = nullptr);
    ~QHelpUI() override;

signals:
    /// The assistant of the first start is to be opened again.
    void assistantWanted();

protected:
    void changeEvent(QEvent* event) override;

private:
    void connectAll();
    void openGuide();
    void listHeadings();
    void markHeading();
    void search(const QString& text);
    void step(int by);
    void tellFound();

    std::unique_ptr<Ui::QHelpUI> m_ui;
    const QString m_folder;
};
