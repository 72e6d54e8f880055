#pragma once

#include <valvecell/IModelProposer.h>

#include <QImage>
#include <QPointF>
#include <QWidget>

class ksImgViewer;
struct TaskResult;

/// The picture of a guided teaching, with what the engine sees in it. Points are pixels, the middle of the top-left one
/// being (0, 0). GUI thread.
class TeachingPicture : public QWidget
{
    Q_OBJECT

public:
    explicit TeachingPicture(QWidget* parent = nullptr);

    void setPicture(const QImage& picture);
    void showProposal(const IModelProposer::Proposal& proposal);
    void showResult(const QImage& picture, const TaskResult& result);

signals:
    void clicked(const QPointF& pixel);

private:
    ksImgViewer* m_viewer;
};
