#include "Resources.h"
#include "support/Mouse.h"
#include "support/Table.h"
#include "viewer/RectRoi.h"
#include "viewer/RoiImgViewer.h"

namespace {

/// A viewer of 400 x 400 pixels, 1:1, on an image of that size.
struct Setup
{
    Setup()
    {
        viewer.resize(400, 400);
        viewer.show();
        QImage image(400, 400, QImage::Format_Grayscale8);
        image.fill(90);
        viewer.setImage(image);
    }

    RoiItem* addPoint(const QPointF& pixel, const QString& name = QStringLiteral("P1"))
    {
        return viewer.addPointRoi(pixel - QPointF(200, 200), Qt::magenta, Qt::green, 20, name);
    }

    AwesomeRoiInfo lastInfo() const { return changes.constLast().constFirst().value<AwesomeRoiInfo>(); }

    Qt::CursorShape cursorAt(const QPoint& at)
    {
        mouse.move(at);
        return viewer.viewport()->cursor().shape();
    }

    RoiImgViewer viewer;
    Mouse mouse{viewer};
    QSignalSpy changes{&viewer, &AwesomeImgViewer::filterroiChanged};
    QSignalSpy locked{&viewer, &AwesomeImgViewer::roiLockIng};
};

} // namespace

class RoiTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { initResources(); }

    void cursorOffsetFollowsTheRotation()
    {
        const QVector<QPair<double, int>> offsets{{0, 0},     {22.5, 0},  {22.6, 1}, {67.6, 2}, {180, 4},
                                                  {337.4, 7}, {337.5, 0}, {-90, 6},  {390, 1},  {-450, 6}};
        for (const auto& [rotation, offset] : offsets)
            QVERIFY2(RoiCursors::rotationOffset(rotation) == offset, QByteArray::number(rotation));
    }

    void draggedPointReportsItsPixel()
    {
        Setup setup;
        setup.addPoint({100, 120});
        setup.addPoint({300, 300}, QStringLiteral("P2"));
        QSignalSpy any(&setup.viewer, &AwesomeImgViewer::roiChanged);
        setup.mouse.drag({103, 118}, {143, 168}); // 12 pixels of finger reach around the point
        QCOMPARE(setup.lastInfo().center, QPointF(140, 170));
        QCOMPARE(setup.changes.constLast().at(1).toString(), QStringLiteral("P1"));
        QCOMPARE(setup.lastInfo().shape, RoiShape::Point);
        QVERIFY(any.size() >= 1);
        QCOMPARE(setup.viewer.roi(QStringLiteral("P2"))->info().center, QPointF(300, 300));
    }

    void keysMovePointsUndoTakesItBackAndLockedOnesStay()
    {
        Setup setup;
        RoiItem* first = setup.addPoint({100, 120});
        RoiItem* second = setup.addPoint({300, 300}, QStringLiteral("P2"));
        QVERIFY(!setup.viewer.undoMove());
        setup.mouse.click({100, 120});
        QTest::keyClick(&setup.viewer, Qt::Key_Right);
        QTest::keyClick(&setup.viewer, Qt::Key_Down, Qt::ShiftModifier);
        QTest::keyClick(&setup.viewer, Qt::Key_Left, Qt::ControlModifier);
        QTest::keyClick(&setup.viewer, Qt::Key_Up, Qt::ControlModifier);
        QCOMPARE(first->info().center, QPointF(100.9, 129.9));
        QCOMPARE(setup.changes.size(), 4);
        QTest::keyClick(&setup.viewer, Qt::Key_Z, Qt::ControlModifier);
        QTest::keyClick(&setup.viewer, Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(first->info().center, QPointF(101, 130));
        setup.mouse.drag({300, 300}, {300, 250});
        QVERIFY(setup.viewer.undoMove());
        QCOMPARE(second->info().center, QPointF(300, 300));
        QCOMPARE(setup.changes.constLast().at(1).toString(), QStringLiteral("P2")); // fields follow the undo
        setup.viewer.lockRois();
        const int changes = setup.changes.size();
        QVERIFY(!setup.viewer.undoMove());
        setup.mouse.drag({300, 300}, {300, 250});
        QCOMPARE(setup.changes.size(), changes);
        QCOMPARE(setup.locked.value(0).value(0).toString(), QStringLiteral("P2"));
        setup.viewer.lockRois(false);
        QVERIFY(setup.viewer.undoMove());
        for (const QImage& other : {QImage(301, 200, QImage::Format_Grayscale8), QImage()}) {
            setup.viewer.setImage(other); // points keep their pixels
            QCOMPARE(first->info().center, QPointF(101, 120));
        }
        setup.viewer.removeAllRois();
        QVERIFY(!setup.viewer.undoMove());
    }

    void handleResizesAndTheOppositeSideStays_data()
    {
        Table::of<QPoint, QPoint, QRectF>(
            {{"right", QPoint(300, 150), QPoint(340, 199), QRectF(100, 100, 240, 100)},
             {"upper left", QPoint(100, 100), QPoint(60, 80), QRectF(60, 80, 240, 120)},
             {"never turned inside out", QPoint(200, 100), QPoint(200, 390), QRectF(100, 199, 200, 1)},
             {"body moves", QPoint(200, 150), QPoint(210, 170), QRectF(110, 120, 200, 100)}});
    }

    void handleResizesAndTheOppositeSideStays()
    {
        const auto [handle, to, rect] = Table::row<QPoint, QPoint, QRectF>();
        Setup setup;
        setup.viewer.addRectRoi({100, 100, 200, 100}, Qt::magenta, Qt::green, QStringLiteral("R"));
        setup.viewer.showRoiHandles();
        setup.mouse.drag(handle, to);
        QCOMPARE(setup.lastInfo().size, rect.size());
        QCOMPARE(setup.lastInfo().center, rect.center());
    }

    void turnedRectangleKeepsItsCentreAndShowsCursors()
    {
        Setup setup;
        const RoiItem* roi =
            setup.viewer.addRotatedRectRoi({100, 150, 200, 100}, 0, Qt::magenta, Qt::green, QStringLiteral("R"));
        setup.viewer.showRoiHandles();
        QCOMPARE(setup.cursorAt({200, 200}), Qt::SizeAllCursor);
        QCOMPARE(setup.cursorAt({300, 200}), Qt::SizeHorCursor);
        QCOMPARE(setup.cursorAt({300, 250}), Qt::SizeFDiagCursor);
        QCOMPARE(setup.cursorAt({325, 200}), Qt::BitmapCursor);
        const auto shown = [&] { return setup.viewer.viewport()->cursor().pixmap().cacheKey(); };
        QCOMPARE(shown(), RoiCursors::rotation(0).pixmap().cacheKey());

        setup.mouse.drag({325, 200}, {200, 325}); // a quarter turn clockwise
        QCOMPARE(roi->info().rotation, 90.0);
        QCOMPARE(roi->info().center, QPointF(200, 200));
        QCOMPARE(setup.lastInfo().rotation, 90.0);
        QCOMPARE(setup.cursorAt({200, 300}), Qt::SizeVerCursor);
        QCOMPARE(setup.cursorAt({150, 300}), Qt::SizeBDiagCursor);
        setup.mouse.move({200, 325});
        QCOMPARE(shown(), RoiCursors::rotation(2).pixmap().cacheKey());

        setup.mouse.drag({200, 300}, {200, 340}); // its right handle is now below: the length grows by 40
        QCOMPARE(roi->info().size, QSizeF(240, 100));
        QCOMPARE(roi->info().center, QPointF(200, 220));
    }

    void markerIsMetByAFingerAtAnyZoom_data() { Table::of<double>({{"far", 0.1}, {"1:1", 1.0}, {"near", 20.0}}); }

    void markerIsMetByAFingerAtAnyZoom()
    {
        const auto [scale] = Table::row<double>();
        Setup setup;
        const RoiItem* point = setup.addPoint({200, 200});
        setup.viewer.setImageScale(scale);
        setup.viewer.centerOn(200, 200);
        const QPoint at = setup.viewer.mapFromScene(point->scenePos());
        setup.mouse.drag(at + QPoint(14, 0), at + QPoint(54, 0));
        QCOMPARE(point->info().center, QPointF(200 + 40 / scale, 200));
    }
};

QTEST_MAIN(RoiTest)
#include "tst_rois.moc"
