#pragma once

#include <QWidget>

/// Lies over a picture that is not of the last trigger: greys it and says of which part it is. The mouse goes through
/// to the picture. GUI thread.
class PictureStamp : public QWidget
{
    Q_OBJECT

public:
    explicit PictureStamp(QWidget* parent = nullptr);

    void setText(const QString& text);
    QString text() const { return m_text; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString m_text;
};
