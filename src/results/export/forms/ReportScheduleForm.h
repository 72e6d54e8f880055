#pragma once

#include "results/export/ReportSettings.h"

#include <QWidget>

class InlineMessage;
class QCheckBox;
class QComboBox;
class QFormLayout;
class QLineEdit;
class QPushButton;

/// The settings of reports that are written by themselves. Whoever shows it stores them.
class ReportScheduleForm : public QWidget
{
    Q_OBJECT

public:
    explicit ReportScheduleForm(QWidget* parent = nullptr);

    void setSettings(const ReportSettings& settings);
    ReportSettings settings() const;
    /// As that of the settings; shown, too.
    QString problem() const { return settings().problem(); }

signals:
    void changed();

protected:
    void changeEvent(QEvent* event) override;

private:
    void retranslate();
    void onChanged();
    void browse();

    QFormLayout* m_form;
    QComboBox* m_when;
    QCheckBox* m_pdf;
    QCheckBox* m_xlsx;
    QWidget* m_formats;
    QWidget* m_place;
    QLineEdit* m_folder;
    QPushButton* m_browse;
    QLineEdit* m_cell;
    InlineMessage* m_message;
};
