#include "dialogs/ModelView.h"

#include <QTableView>

ModelView::ModelView(QTableView* view, const IModelSource& source, QObject* parent)
    : QObject(parent)
    , m_view(view)
{
    // The rows have their own background, so that only lines tell them apart.
    m_view->setShowGrid(true);
    m_model = new ModelModel(source, this);
    m_view->setModel(m_model);
}
