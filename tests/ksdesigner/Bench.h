#pragma once

#include "Designer.h"
#include "FakeEngine.h"
#include "widgets/ImageView.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPainter>
#include <QPushButton>
#include <QtTest>

/// The designer opened on a fake engine and operated by the names of its controls.
struct Bench
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

    template <typename Widget>
    Widget* get(const char* name) const
    {
        auto* found = designer.window()->findChild<Widget*>(QLatin1String(name));
        if (!found)
            qFatal("no control %s", name);
        return found;
    }

    void press(const char* name) const
    {
        auto* button = get<QAbstractButton>(name);
        // Near the left end: a check box may be wider than what can be clicked.
        QTest::mouseClick(button, Qt::LeftButton, {}, {8, button->height() / 2});
    }
    bool canPress(const char* button) const { return get<QAbstractButton>(button)->isEnabled(); }
    QString text(const char* label) const { return get<QLabel>(label)->text(); }
    void choose(int row) const { get<QListWidget>("modelList")->setCurrentRow(row); }

    void type(const char* field, const QString& text) const
    {
        auto* edit = get<QLineEdit>(field);
        edit->setFocus();
        edit->selectAll();
        QTest::keyClick(edit, Qt::Key_Delete);
        QTest::keyClicks(edit, text);
    }

    /// Answers the question of a panel by its accepting button.
    void accept(const QString& panel, const QString& name = {}) const
    {
        QWidget* owner = panel == designer.window()->objectName() ? designer.window() : get<QWidget>(qPrintable(panel));
        auto* ask = owner->findChild<QWidget*>(QStringLiteral("ask"), Qt::FindDirectChildrenOnly);
        if (!name.isEmpty())
            ask->findChild<QLineEdit*>(QStringLiteral("nameEdit"))->setText(name);
        QTest::mouseClick(ask->findChild<QPushButton*>(QStringLiteral("firstButton")), Qt::LeftButton);
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

    void clickImage(const QPointF& point) const
    {
        auto* view = get<ImageView>("view");
        QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, view->viewPointOf(point));
    }

    void shoot(const char* name) const
    {
        QVERIFY(designer.window()->grab().save(QStringLiteral(VALVECELL_BIN_DIR "/../designer-%1.png").arg(name)));
    }
};
