#pragma once

#include "common/Background.h"
#include "results/data/PartFilter.h"

#include <QWidget>

#include <optional>

class QAbstractButton;
class QLabel;
class QPlainTextEdit;
class QTimer;
class ksImgViewer;

/// One part beside its table: its picture, with what was drawn over it or as the camera gave it, what is known of it,
/// and what somebody notes of it.
class PartDetail : public QWidget
{
    Q_OBJECT

public:
    explicit PartDetail(QWidget* parent = nullptr);
    ~PartDetail() override;

    /// What was typed of a part of the one before is noted.
    void setHome(const QString& home);
    /// Nothing: no part. What was typed of the one before is noted.
    void show(const std::optional<PartRow>& part);
    /// Goes to the comment.
    void comment();
    /// Whether "open in the designer" is there to be clicked.
    void setDesigner(bool there);

signals:
    /// To be stored; see ReviewStore.
    void reviewed(qint64 uid, qint64 wall, bool marked, const QString& comment);
    /// Of the part that is shown: its source image.
    void designerWanted(const QString& picture, const QString& model, int station);

protected:
    void changeEvent(QEvent* event) override;

private:
    void retranslate();
    void showPicture();
    void note();
    QString picture(bool source) const;

    QString m_home;
    std::optional<PartRow> m_part;
    bool m_changed = false; ///< the note, by hand
    ksImgViewer* m_viewer;
    QLabel* m_said; ///< in the picture's place
    QLabel* m_values;
    QAbstractButton* m_source;
    QAbstractButton* m_designer;
    QAbstractButton* m_mark;
    QPlainTextEdit* m_comment;
    QTimer* m_settled;
    int m_pictures = 0;
    Background m_reading;
};
