#pragma once

#include "guided/calibration/CalibrationDraft.h"
#include "guided/stepper/GuidePage.h"

#include <functional>
#include <memory>

class Background;
class CalibrationPicture;
class PictureDesk;
class QCheckBox;
class QComboBox;
class QLabel;
class QPushButton;
class QTableWidget;
class QVBoxLayout;
class DecimalField;
class NumberField;

/// What the pages of a guided calibration share: the draft that they fill, and the picture beside them. Both outlive
/// the pages.
class CalibrationPage : public GuidePage
{
    Q_OBJECT

protected:
    CalibrationPage(CalibrationDraft& draft, CalibrationPicture& picture);

    /// A field with its caption above or beside it.
    QLabel* addCaption(QVBoxLayout* rows);
    /// The markers, or the points of the board.
    void showPoints();

    CalibrationDraft& m_draft;
    CalibrationPicture& m_picture;
};

/// Where the picture comes from: camera, file or the reference that the station has.
class PicturePage : public CalibrationPage
{
    Q_OBJECT

public:
    PicturePage(CalibrationDraft& draft, CalibrationPicture& picture, PictureDesk& desk);

    QString title() const override { return tr("图像"); }
    QString hint() const override;
    QString problem() const override;
    void enter() override;
    void retranslate() override;

    /// The station that is calibrated; whether it can be chosen, and its camera.
    void setStation(int station, bool onlyOne, const QString& cameraKey, bool canCapture);

signals:
    void stationChosen(int station);
    void captureWanted();
    void fileWanted();
    void referenceWanted();

private:
    QLabel* m_stationCaption;
    QComboBox* m_stations;
    QPushButton* m_capture;
    QPushButton* m_file;
    QPushButton* m_reference;
    QLabel* m_source;
    QString m_failure;
    bool m_canCapture = false;
    QString m_camera;
};

/// Marks points by hand, or finds a board.
class MarkPage : public CalibrationPage
{
    Q_OBJECT

public:
    MarkPage(CalibrationDraft& draft, CalibrationPicture& picture);
    ~MarkPage() override;

    QString title() const override { return tr("标记"); }
    QString hint() const override;
    QString problem() const override;
    void enter() override;
    void leave() override;
    void retranslate() override;

private:
    void chooseMethod(int method);
    void choose(int marker);
    void place(const QPointF& point);
    void move(int marker, const QPointF& point);
    void takeTyped();
    void findBoard();
    void onFound(const QVector<QPointF>& points, const QSize& picture);
    void showValues();

    QLabel* m_methodCaption;
    QComboBox* m_method;
    QTableWidget* m_table;
    QPushButton* m_snap;
    QLabel* m_columnsCaption;
    QLabel* m_rowsCaption;
    NumberField* m_columns;
    NumberField* m_rows;
    QPushButton* m_find;
    QLabel* m_found;
    int m_marker = 0;
    bool m_filling = false;
    bool m_searching = false;
    bool m_searched = false;
    std::unique_ptr<Background> m_background;
};

/// The machine's coordinates of the points, or of the board.
class RealPage : public CalibrationPage
{
    Q_OBJECT

public:
    RealPage(CalibrationDraft& draft, CalibrationPicture& picture);

    QString title() const override { return tr("实际坐标"); }
    QString hint() const override;
    QString problem() const override;
    void enter() override;
    void retranslate() override;

private:
    struct Row
    {
        QLabel* caption;
        DecimalField* first;
        DecimalField* second; ///< null for a single value
    };

    Row addRow(QVBoxLayout* rows, const char* name, bool two);
    void take();
    void show(const Row& row, bool shown);

    QVector<Row> m_points;
    Row m_length;
    Row m_pitch;
    Row m_origin;
    Row m_turn;
    QCheckBox* m_upwards;
    bool m_showing = false;
};

/// How well the calibration fits its points, and what the lens does.
class ResidualPage : public CalibrationPage
{
    Q_OBJECT

public:
    ResidualPage(CalibrationDraft& draft, CalibrationPicture& picture);

    QString title() const override { return tr("残差"); }
    QString hint() const override;
    QString problem() const override { return m_draft.problem(); }
    QString warning() const override { return m_draft.doubt(); }
    void enter() override;
    void retranslate() override;

private:
    QTableWidget* m_table;
    QLabel* m_facts;
};

/// The same part before and after, and the calibrations that were.
class ComparePage : public CalibrationPage
{
    Q_OBJECT

public:
    /// What the calibration in force, and the wanted one, make of a pixel.
    struct Pair
    {
        Calibration before;
        Calibration after;
    };
    ComparePage(CalibrationDraft& draft, CalibrationPicture& picture, std::function<Pair()> calibrations);

    QString title() const override { return tr("对比与应用"); }
    QString hint() const override;
    QString problem() const override { return m_draft.problem(); }
    QString warning() const override { return m_draft.doubt(); }
    void enter() override;
    void retranslate() override;

    /// The last part of the station that was answered with a place, as a pixel; nothing when there is none.
    void setLastPart(const QString& name, const std::optional<QPointF>& pixel);

public slots:
    void refresh();

private:
    void moveTo(const QPointF& point);
    void addPlace(const QString& name, const QPointF& pixel, const Pair& pair);

    std::function<Pair()> m_calibrations;
    QTableWidget* m_table;
    QLabel* m_note;
    QString m_partName;
    std::optional<QPointF> m_part;
    QPointF m_place;
    bool m_placed = false;
};
