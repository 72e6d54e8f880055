#pragma once

#include "dialogs/settings/SettingsStore.h"

#include <QMap>
#include <QObject>

class QWidget;

/// Binds the fields of a dialog to settings: each field that names one in its property "settingKey" (in the .ui) shows
/// and edits it; its accessible name is what messages call it, and a text with the property "mayBeEmpty" may. GUI
/// thread.
class SettingsForm : public QObject
{
    Q_OBJECT

public:
    /// `dialog` outlives the form. Fields for whole numbers take the ranges of their keys.
    SettingsForm(QWidget* dialog, const QMap<QString, SettingRange>& ranges);

    /// Fills all fields; a setting without a field is left aside.
    void show(const SettingsMap& settings);
    /// What the fields hold; a number that is none stands as the typed text.
    SettingsMap values() const;

    /// Marks the fields that are wrong, and returns the first problem; empty when all can be stored. Hidden fields are
    /// left aside; those that lie on another page are not. A choice that is missing is a problem only if it is a new
    /// one.
    QString judge(const SettingsMap& stored) const;

    /// Choices that were stored once and no longer exist; they may stay.
    QString warning() const;

signals:
    /// A field holds something else, or a choice has become missing or is back.
    void edited();

private:
    void bind(QWidget* field, SettingRange range);

    QVector<QWidget*> m_fields; ///< in the order of the .ui
};
