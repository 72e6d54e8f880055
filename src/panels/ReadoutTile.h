#pragma once

#include <QWidget>

/// A value below its caption, in digits as large as the room allows. It paints itself: another value costs one small
/// paint and never moves its neighbours. GUI thread.
class ReadoutTile : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(QString caption READ caption WRITE setCaption)
    Q_PROPERTY(int maximumDigits READ maximumDigits WRITE setMaximumDigits)

public:
    enum Sign { Plain, Faint, Good, Caution, Bad };

    explicit ReadoutTile(QWidget* parent = nullptr);

    /// A small text above the value; none when it is empty.
    QString caption() const { return m_caption; }
    void setCaption(const QString& caption);

    /// The largest height of the value's font, pixels.
    int maximumDigits() const { return m_maximumDigits; }
    void setMaximumDigits(int pixels) { m_maximumDigits = pixels; }

    /// A number whose digits keep their size and their places: as large as this widest one allows. Empty for texts.
    void setWidest(const QString& widest) { m_widest = widest; }

    /// A small text below the value; none when it is empty.
    void setFoot(const QString& foot);
    QString foot() const { return m_foot; }

    QString value() const { return m_value; }
    Sign sign() const { return m_sign; }
    void setValue(const QString& value, Sign sign = Plain);
    /// Whether it can be clicked; `tip` says what for.
    void setLeadsOn(bool leadsOn, const QString& tip = {});

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

signals:
    void clicked();

protected:
    void mouseReleaseEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    QFont fitting(const QRect& room) const;
    void paintNumber(QPainter& painter, const QRect& room) const;

    QString m_caption;
    QString m_foot;
    QString m_widest;
    QString m_value;
    Sign m_sign = Plain;
    int m_maximumDigits = 64;
    bool m_leadsOn = false;
};
