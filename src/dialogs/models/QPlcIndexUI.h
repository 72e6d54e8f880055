#pragma once

#include "common/AuditChange.h"

#include <QDialog>

#include <memory>

class ModelManager;
class PlcIndexModel;
class PlcIndexTable;

namespace Ui {
class QPlcIndexUI;
}

/// The PLC index tables of both stations side by side, with shared indices and models that the library does not know
/// marked. Shows the stored tables at each showing; nothing is changed before OK or Apply. GUI thread.
class QPlcIndexUI : public QDialog
{
    Q_OBJECT

public:
    /// Both outlive the dialog.
    QPlcIndexUI(ModelManager& models, const PlcIndexTable& stored, QWidget* parent = nullptr);
    ~QPlcIndexUI() override;

    /// The names of the stations' tables; may be set anew at any time.
    void setStations(const QStringList& stations);

signals:
    /// Tables were changed and stored; names are "plcIndex/STATION/MODEL", an empty text stands for no index.
    void tablesApplied(const AuditChanges& changes);

public slots:
    /// OK: applies, and closes when all was stored.
    void accept() override;
    /// Stores both tables or none; says in the dialog what keeps it from that.
    void apply();

protected:
    void showEvent(QShowEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    enum class After { Stay, Close };

    void connectAll();
    void judge();
    void clearChosen();
    void submit(After after);
    void store(After after);

    std::unique_ptr<Ui::QPlcIndexUI> m_ui;
    PlcIndexModel* m_table;
};
