#include "dialogs/cameras/FeatureEditor.h"

#include "common/forms/NumberField.h"
#include "dialogs/cameras/CameraFeatureModel.h"

#include <QComboBox>
#include <QPushButton>
#include <QSortFilterProxyModel>

#include <limits>

namespace {

using Kind = CameraFeature::Kind;

const CameraFeature& featureOf(const QModelIndex& index)
{
    const auto* filter = qobject_cast<const QSortFilterProxyModel*>(index.model());
    return *static_cast<const CameraFeatureModel*>(filter->sourceModel())->feature(filter->mapToSource(index));
}

} // namespace

QWidget* FeatureEditor::createEditor(QWidget* parent, const QStyleOptionViewItem&, const QModelIndex& index) const
{
    const CameraFeature& feature = featureOf(index);
    QWidget* editor = nullptr;
    if (feature.kind == Kind::Command) {
        editor = makeButton(parent);
    } else if (feature.kind == Kind::Choice || feature.kind == Kind::Switch) {
        editor = makeChoice(parent, index);
    } else if (feature.kind == Kind::Text) {
        editor = new QLineEdit(parent);
    } else {
        auto* number = new DecimalField(parent);
        const bool limited = feature.maximum > feature.minimum;
        number->setMinimum(limited ? feature.minimum : std::numeric_limits<double>::lowest());
        number->setMaximum(limited ? feature.maximum : std::numeric_limits<double>::max());
        editor = number;
    }
    editor->setAccessibleName(feature.name);
    editor->setAutoFillBackground(true);
    return editor;
}

void FeatureEditor::finish(QWidget* editor) const
{
    auto* self = const_cast<FeatureEditor*>(this); // editors are made by a const function, and signals are not const
    emit self->commitData(editor);
    emit self->closeEditor(editor);
}

QWidget* FeatureEditor::makeChoice(QWidget* parent, const QModelIndex& index) const
{
    const CameraFeature& feature = featureOf(index);
    auto* box = new QComboBox(parent);
    if (feature.kind == Kind::Switch) {
        box->addItem(CameraFeatureModel::tr("关"), false);
        box->addItem(CameraFeatureModel::tr("开"), true);
    }
    for (const QString& choice : feature.choices)
        box->addItem(choice, choice);
    connect(box, QOverload<int>::of(&QComboBox::activated), this, [this, box] { finish(box); });
    return box;
}

QWidget* FeatureEditor::makeButton(QWidget* parent) const
{
    auto* button = new QPushButton(CameraFeatureModel::tr("执行"), parent);
    connect(button, &QPushButton::clicked, this, [this, button] {
        button->setProperty("pressed", true);
        finish(button);
    });
    return button;
}

void FeatureEditor::setEditorData(QWidget* editor, const QModelIndex& index) const
{
    const QVariant value = index.data(Qt::EditRole);
    if (auto* box = qobject_cast<QComboBox*>(editor))
        box->setCurrentIndex(box->findData(value));
    else if (auto* line = qobject_cast<QLineEdit*>(editor); line && !line->isModified())
        line->setText(value.toString());
}

void FeatureEditor::setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const
{
    if (auto* box = qobject_cast<QComboBox*>(editor))
        model->setData(index, box->currentData());
    else if (auto* line = qobject_cast<QLineEdit*>(editor))
        model->setData(index, line->text());
    else if (editor->property("pressed").toBool())
        model->setData(index, true);
}
