#pragma once

#include "db/ModelModel.h"

#include <QObject>

class QTableView;

/// Shows the list of models in a table view that a dialog owns.
class ModelView : public QObject
{
    Q_OBJECT

public:
    /// The source and the view outlive this object.
    ModelView(QTableView* view, const IModelSource& source, QObject* parent = nullptr);

    QTableView* view() const { return m_view; }
    ModelModel* model() const { return m_model; }

private:
    QTableView* m_view;
    ModelModel* m_model;
};
