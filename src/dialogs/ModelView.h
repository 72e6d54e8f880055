#pragma once

#include "db/ModelModel.h"

#include <QObject>

class QTableView;

/// Shows the list of models in a table view that a dialog owns.
class ModelView : public QObject
{
    Q_OBJECT

public:
    /// The view outlives this object, and the model's source the model, which is the view's from now on.
    ModelView(QTableView* view, ModelModel* model, QObject* parent = nullptr);

    QTableView* view() const { return m_view; }
    ModelModel* model() const { return m_model; }

private:
    QTableView* m_view;
    ModelModel* m_model;
};
