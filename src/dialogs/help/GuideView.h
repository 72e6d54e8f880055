#pragma once

#include <QTextBrowser>
#include <QVector>

/// A page of the guides, in Markdown with pictures beside it: its headings to go to, and a search in it. GUI thread.
class GuideView : public QTextBrowser
{
    Q_OBJECT

public:
    struct Heading
    {
        QString text;
        int level = 1; ///< 1 for the page's title
        int position = 0;
    };

    explicit GuideView(QWidget* parent = nullptr);

    /// Shows a page; false when there is no such file.
    bool open(const QString& path);
    const QVector<Heading>& headings() const { return m_headings; }

    /// Brings the place to the top of the view.
    void goTo(int position);
    /// The number of the heading under which the top of the view lies; -1 above the first.
    int headingAtTop() const;

    /// Marks all places that hold the text, whatever its case, and goes to the first from here on.
    void search(const QString& text);
    int foundCount() const { return m_found.size(); }
    /// To the next or the previous of the places that the search found, and around at the ends.
    void step(int by);
    /// Which of them it is at, from 1 on; 0 for none.
    int current() const { return m_current + 1; }

    QVariant loadResource(int type, const QUrl& url) override;

signals:
    /// Another page is shown, by open(), by a link or by going back.
    void pageShown();

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void prepare();
    void follow(const QUrl& link);
    void readPage();
    void styleBlocks();
    void styleTables();
    void fitPictures();
    void showMarks();

    QVector<Heading> m_headings;
    QVector<QUrl> m_pictures; ///< as the page names them
    QVector<QTextCursor> m_found;
    int m_current = -1;
};
