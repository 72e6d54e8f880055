#pragma once

#include "Designer.h"
#include "panels/TryPanel.h"
#include "support/FakeEngine.h"
#include "support/Hand.h"
#include "support/Table.h"
#include "widgets/ImageView.h"

#include <QComboBox>
#include <QListWidget>
#include <QPainter>
#include <QPushButton>

/// The designer opened on a fake engine and operated by the names of its controls.
struct Bench : Hand
{
    FakeEngine engine;
    Designer designer;
    QTemporaryDir dir;

    /// With the engine that the test drives, or with another.
    void open(IEngine* other = nullptr)
    {
        designer.attachEngine(other ? other : &engine);
        designer.openDesigner(nullptr);
    }

    /// As open(), with the model of this row.
    void openAt(int row)
    {
        open();
        choose(row);
    }
    void choose(int row) const { get<QListWidget>("modelList")->setCurrentRow(row); }
    QString text(const char* label) const { return get<QLabel>(label)->text(); }
    QString typed(const char* field) const { return get<QLineEdit>(field)->text(); }

    /// Answers the question of a panel by its accepting button.
    void accept(const QString& panel, const QString& name = {}) const
    {
        QWidget* owner = panel == designer.window()->objectName() ? designer.window() : get<QWidget>(qPrintable(panel));
        auto* ask = owner->findChild<QWidget*>(QStringLiteral("ask"), Qt::FindDirectChildrenOnly);
        if (!name.isEmpty())
            ask->findChild<QLineEdit*>(QStringLiteral("answerEdit"))->setText(name);
        QTest::mouseClick(ask->findChild<QPushButton*>(QStringLiteral("firstAnswer")), Qt::LeftButton);
    }

    QStringList rows() const
    {
        QStringList texts;
        auto* list = get<QListWidget>("modelList");
        for (int row = 0; row < list->count(); ++row)
            texts.append(list->item(row)->text());
        return texts;
    }

    /// A picture of a wheel, well enough for a person; returns its path.
    QString image(const QString& name) const
    {
        QImage picture(640, 480, QImage::Format_Grayscale8);
        picture.fill(60);
        QPainter painter(&picture);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setBrush(QColor(170, 170, 170));
        painter.drawEllipse(QPoint(320, 240), 200, 200);
        painter.setBrush(QColor(20, 20, 20));
        painter.drawEllipse(QPoint(420, 130), 14, 14);
        painter.end();
        const QString path = dir.filePath(name);
        QDir().mkpath(QFileInfo(path).path());
        return picture.save(path, "PNG") ? path : QString();
    }

    /// Opens a picture to be tried; whether the engine is asked once for it.
    bool tries(const QString& name)
    {
        get<TryPanel>("TryPanel")->openImage(image(name));
        return QTest::qWaitFor([this] { return engine.tasks.size() == 1; }, patienceMs);
    }

    void clickImage(const QPointF& point) const
    {
        auto* view = get<ImageView>("view");
        QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, view->viewPointOf(point));
    }

protected:
    QWidget& window() const override { return *designer.window(); }
};
