#include "guided/vision/CalibrationBoard.h"
#include "guided/vision/LensDistortion.h"
#include "guided/vision/PlaneFit.h"
#include "guided/vision/PointSnap.h"
#include "support/Table.h"

#include <opencv2/imgproc.hpp>

#include <cmath>
#include <functional>

namespace {

double lengthOf(const QPointF& v)
{
    return std::hypot(v.x(), v.y());
}

/// A picture of `light`, 0 to 1 at each place of it, slightly out of focus and noisy as a camera's.
cv::Mat rendered(const QSize& size, int supersampling, const std::function<double(QPointF)>& light)
{
    cv::Mat picture(size.height(), size.width(), CV_32F);
    for (int y = 0; y < picture.rows; ++y) {
        for (int x = 0; x < picture.cols; ++x) {
            double sum = 0;
            for (int i = 0; i < supersampling * supersampling; ++i) {
                const double dx = (i % supersampling + 0.5) / supersampling - 0.5;
                const double dy = (i / supersampling + 0.5) / supersampling - 0.5;
                sum += light({x + dx, y + dy});
            }
            picture.at<float>(y, x) = float(40 + 170 * sum / (supersampling * supersampling));
        }
    }
    cv::GaussianBlur(picture, picture, {5, 5}, 0.8);
    cv::Mat noise(picture.size(), CV_32F);
    cv::RNG random(7);
    random.fill(noise, cv::RNG::NORMAL, 0, 1.5);
    picture += noise;
    cv::Mat gray;
    picture.convertTo(gray, CV_8U);
    return gray;
}

/// A board as a camera sees it: its middle in the picture's, turned, tilted and bent by the lens.
struct View
{
    CalibrationBoard board;
    double turn = 0;     ///< degrees
    double tilt = 0;     ///< share by which the far side is smaller, over the picture's width
    double strength = 0; ///< of the lens
    double mmPerPixel = 0.25;
    QSize size{640, 480};

    QPointF toBoard(const QPointF& pixel) const
    {
        LensDistortion lens;
        lens.strength = strength;
        lens.picture = size;
        const QPointF arm = lens.straight(pixel) - QPointF(0.5 * (size.width() - 1), 0.5 * (size.height() - 1));
        const double far = 1 + tilt * arm.x() / size.width();
        const double c = std::cos(turn * CV_PI / 180);
        const double s = std::sin(turn * CV_PI / 180);
        const QPointF flat = arm * (mmPerPixel / far);
        return QPointF(c * flat.x() + s * flat.y(), c * flat.y() - s * flat.x()) +
               QPointF(0.5 * (board.columns - 1) * board.pitch, 0.5 * (board.rows - 1) * board.pitch);
    }

    double light(const QPointF& pixel) const
    {
        const QPointF place = toBoard(pixel) / board.pitch;
        const double column = std::floor(place.x());
        const double row = std::floor(place.y());
        if (board.kind == CalibrationBoard::Kind::Chessboard) {
            const bool on = column >= -1 && row >= -1 && column < board.columns && row < board.rows;
            return on && std::fmod(column + row + 10, 2) < 1 ? 0 : 1;
        }
        const QPointF nearest(std::clamp(std::round(place.x()), 0.0, board.columns - 1.0),
                              std::clamp(std::round(place.y()), 0.0, board.rows - 1.0));
        return lengthOf(place - nearest) < 0.3 ? 0 : 1;
    }

    cv::Mat picture() const
    {
        return rendered(size, 3, [this](const QPointF& pixel) { return light(pixel); });
    }
};

constexpr auto chess = CalibrationBoard::Kind::Chessboard;
constexpr auto circles = CalibrationBoard::Kind::Circles;

} // namespace

class CalibrationVisionTest : public QObject
{
    Q_OBJECT

private slots:
    /// Kind, turn, tilt, distortion; the truth is what the picture was rendered with.
    void boardIsMeasured_data()
    {
        Table::of<int, double, double, double>({{"chessboard", int(chess), 0, 0, 0},
                                                {"turned", int(chess), 17, 0, 0},
                                                {"upside down", int(chess), 176, 0, 0},
                                                {"barrel", int(chess), -6, 0, 0.04},
                                                {"cushion, tilted", int(chess), 9, 0.08, -0.03},
                                                {"circles", int(circles), 3, 0, 0},
                                                {"circles, barrel, tilted", int(circles), -8, 0.06, 0.03}});
    }
    void boardIsMeasured()
    {
        const auto [kind, turn, tilt, strength] = Table::row<int, double, double, double>();
        View view;
        view.board = {CalibrationBoard::Kind(kind), 9, 7, 12};
        view.turn = turn;
        view.tilt = tilt;
        view.strength = strength;
        const QVector<QPointF> seen = view.board.find(view.picture());
        QCOMPARE(seen.size(), 63);
        const bool reversed = std::abs(turn) > 90; // read from the upper left, whichever way the board lies
        QVector<PointPair> pairs;
        double worst = 0;
        for (int i = 0; i < seen.size(); ++i) {
            const QPointF own = view.board.points()[reversed ? seen.size() - 1 - i : i];
            worst = std::max(worst, lengthOf(view.toBoard(seen[i]) - own) / view.mmPerPixel);
            pairs.append({seen[i], own});
        }
        QVERIFY2(worst < 0.2, qPrintable(QStringLiteral("%1 px off").arg(worst)));
        const auto lens = LensDistortion::estimate(pairs, view.size);
        QVERIFY2(lens && std::abs(lens->strength - strength) < 0.004, qPrintable(QString::number(lens->strength)));
        QVERIFY(lens->rmsWith < 0.1 * view.mmPerPixel);
        const auto map = PlaneFit::affine(pairs);
        QVERIFY(map);
        QVERIFY(std::abs(Calibration::fourPoint(*map).mmPerPixel() / view.mmPerPixel - 1) <
                0.001 + std::abs(strength) + tilt * tilt);
    }

    void whatIsNoBoardIsNotFound()
    {
        View view;
        view.board = {chess, 9, 7, 12};
        cv::Mat covered = view.picture();
        covered(cv::Rect(0, 0, 200, 200)).setTo(128);
        QVERIFY(view.board.find(covered).isEmpty());
        QVERIFY((CalibrationBoard{circles, 9, 7, 12}.find(cv::Mat(480, 640, CV_8U, cv::Scalar(90)))).isEmpty());
        QVERIFY(view.board.find({}).isEmpty());
    }

    /// Drawing, where somebody clicked, what is found there and where.
    void markerSnaps_data()
    {
        Table::of<QString, QPointF, int, QPointF>(
            {{"dark hole", "disc", QPointF(96, 83), int(SnappedPoint::Kind::Hole), QPointF(100.25, 79.5)},
             {"bright disc", "bright", QPointF(104, 75), int(SnappedPoint::Kind::Hole), QPointF(100.25, 79.5)},
             {"hole aslant", "ellipse", QPointF(103, 83), int(SnappedPoint::Kind::Hole), QPointF(100.25, 79.5)},
             {"scratched hole", "scratched", QPointF(103, 83), int(SnappedPoint::Kind::Hole), QPointF(100.25, 79.5)},
             {"larger than the reach", "large", QPointF(110, 70), int(SnappedPoint::Kind::Hole), QPointF(100.25, 79.5)},
             {"corner", "corner", QPointF(106, 74), int(SnappedPoint::Kind::Corner), QPointF(100.25, 79.5)},
             {"edge", "edge", QPointF(94, 60), int(SnappedPoint::Kind::Edge), QPointF(100.25, 60)},
             {"nothing", "plain", QPointF(94, 60), int(SnappedPoint::Kind::None), QPointF(94, 60)},
             {"at the picture's border", "plain", QPointF(0, 0), int(SnappedPoint::Kind::None), QPointF(0, 0)},
             {"out of the picture", "disc", QPointF(500, -90), int(SnappedPoint::Kind::None), QPointF(500, -90)}});
    }
    void markerSnaps()
    {
        const auto [drawing, clicked, kind, truth] = Table::row<QString, QPointF, int, QPointF>();
        const QString what = drawing;
        const cv::Mat picture = rendered({200, 160}, 4, [what](const QPointF& pixel) {
            const QPointF arm = pixel - QPointF(100.25, 79.5);
            const double stretch = what == "ellipse" ? 1.35 : 1;
            const bool inside = std::hypot(arm.x() / stretch, arm.y()) < (what == "large" ? 31.5 : 11.2);
            if (what == "corner")
                return (arm.x() > 0) == (arm.y() > 0) ? 0.0 : 1.0;
            if (what == "edge")
                return arm.x() > 0 ? 1.0 : 0.0;
            if (what == "plain")
                return 0.5;
            if (what == "scratched" && std::abs(arm.y() - arm.x() - 4) < 1 && arm.x() < -3)
                return 0.7;
            return inside == (what == "bright") ? 1.0 : 0.0;
        });
        const SnappedPoint snapped = snapPoint(picture, clicked, 20);
        QCOMPARE(int(snapped.kind), kind);
        QVERIFY2(lengthOf(snapped.point - truth) < 0.12,
                 qPrintable(QStringLiteral("%1, %2").arg(snapped.point.x()).arg(snapped.point.y())));
    }

    /// A similarity with its handedness, and an affine map, come back from their pairs.
    void mapsAreFitted()
    {
        const AffineMap turned{0.2, 0.1, 5, 0.1, -0.2, 7};
        const AffineMap skewed{0.2, 0.01, -3, 0.02, 0.21, 4};
        QVector<PointPair> few;
        QVector<PointPair> many;
        for (const QPointF& pixel : {QPointF(10, 20), QPointF(500, 40), QPointF(30, 400), QPointF(480, 410)}) {
            few.append({pixel, Calibration::fourPoint(turned).toMachine(pixel)});
            many.append({pixel, Calibration::fourPoint(skewed).toMachine(pixel)});
        }
        QVERIFY(PlaneFit::residuals(*PlaneFit::similarity(few), few).largest < 1e-9);
        QVERIFY(PlaneFit::residuals(*PlaneFit::affine(many), many).largest < 1e-9);
        many[3].real += QPointF(0.4, 0);
        const FitResiduals missed = PlaneFit::residuals(*PlaneFit::affine(many), many);
        QVERIFY(missed.rms > 0.05 && missed.largest < 0.2); // shared by all, where three points would hide it
        QVERIFY(!PlaneFit::affine(few.mid(0, 2)));
        for (PointPair& pair : few)
            pair.pixel.setY(2 * pair.pixel.x());
        QVERIFY(!PlaneFit::affine(few));
        QVERIFY(!PlaneFit::similarity({few[0], few[0]}));
    }
};

QTEST_APPLESS_MAIN(CalibrationVisionTest)
#include "tst_calibrationvision.moc"
