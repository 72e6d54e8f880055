#include "dialogs/ModelView.h"

#include <QStyledItemDelegate>
#include <QTableView>

namespace {

constexpr int inkLightness = 200; ///< of 255

/// The model's colours are for a light ground. A dark window has its own in place of white and black, and brightens
/// what stands out.
class PlainColors : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override
    {
        QStyledItemDelegate::initStyleOption(option, index);
        const QPalette& own = option->widget->palette();
        if (own.color(QPalette::Base).lightness() >= 128)
            return;
        if (option->backgroundBrush == QBrush(Qt::white))
            option->backgroundBrush = Qt::NoBrush;
        const QColor ink = option->palette.color(QPalette::Text);
        if (ink == QColor(Qt::black))
            option->palette.setColor(QPalette::Text, own.color(QPalette::Text));
        else if (ink.lightness() < inkLightness)
            option->palette.setColor(QPalette::Text, QColor::fromHsl(ink.hslHue(), ink.hslSaturation(), inkLightness));
    }
};

} // namespace

ModelView::ModelView(QTableView* view, ModelModel* model, QObject* parent)
    : QObject(parent)
    , m_view(view)
    , m_model(model)
{
    m_model->setParent(this);
    // The rows have their own background, so that only lines tell them apart.
    m_view->setShowGrid(true);
    m_view->setModel(m_model);
    m_view->setItemDelegate(new PlainColors(m_view));
}
