#include "results/export/XlsxTable.h"

#include "platform/System.h"
#include "results/export/WholeFile.h"

#include <QDir>
#include <QFile>

#include <cmath>
#include <string_view>
#include <xlsxwriter.h>
#include <zip.h>

namespace {

constexpr double msADay = 86400000.0;
constexpr double dayOf1970 = 25569; // as a spreadsheet counts days
constexpr int longestText = 32767;

/// Rows of a sheet of the finished file. The library does not see when its temporary files meet a full disk.
qint64 rowsIn(const QString& path, int sheet)
{
    zip_t* const archive = zip_open(platform::nameForLibraries(path).constData(), ZIP_RDONLY, nullptr);
    if (!archive)
        return -1;
    const QByteArray name = "xl/worksheets/sheet" + QByteArray::number(sheet) + ".xml";
    zip_file_t* const file = zip_fopen(archive, name.constData(), 0);
    constexpr std::string_view end = "</row>";
    QByteArray piece(1 << 18, '\0');
    qint64 rows = 0;
    int kept = 0;
    for (zip_int64_t got = 1; file && got > 0;) {
        got = zip_fread(file, piece.data() + kept, zip_uint64_t(piece.size() - kept));
        const std::string_view text(piece.constData(), size_t(kept + qMax<zip_int64_t>(0, got)));
        size_t after = 0;
        for (size_t at = text.find(end); at != text.npos; at = text.find(end, after)) {
            ++rows;
            after = at + end.size();
        }
        kept = int(qMin(text.size() - after, end.size() - 1));
        std::copy_n(text.end() - kept, kept, piece.begin());
    }
    if (file)
        zip_fclose(file);
    zip_discard(archive);
    return file ? rows : -1;
}

QString shortened(const QString& text)
{
    return text.size() > longestText ? text.left(longestText - 1) + QChar(0x2026) : text;
}

} // namespace

struct XlsxTable::Book
{
    explicit Book(const QString& path)
        : file(path)
        , folder(platform::folderForLibraries(QDir::tempPath()))
    {
        lxw_workbook_options options{LXW_TRUE, folder.data(), LXW_TRUE};
        book = workbook_new_opt(platform::nameForLibraries(file.aside()).constData(), &options);
    }
    ~Book()
    {
        if (book)
            lxw_workbook_free(book);
    }

    lxw_format* format(const char* numbers, bool bold = false)
    {
        lxw_format* const made = workbook_add_format(book);
        if (numbers)
            format_set_num_format(made, numbers);
        if (bold)
            format_set_bold(made);
        return made;
    }

    WholeFile file;
    QByteArray folder;
    lxw_workbook* book = nullptr;
    lxw_worksheet* sheet = nullptr;
    lxw_format* head = nullptr;
    QVector<lxw_format*> formats; ///< of the columns
    QVector<int> rows;            ///< of the sheets so far
};

XlsxTable::XlsxTable(const QString& path, QString sheet, int rowsASheet)
    : m_sheet(std::move(sheet))
    , m_rowsASheet(rowsASheet)
    , m_book(std::make_unique<Book>(path))
{
}

XlsxTable::~XlsxTable() = default;

bool XlsxTable::begin(const QVector<ExportColumn>& columns)
{
    m_columns = columns;
    QFile probe(m_book->file.aside());
    if (!probe.open(QIODevice::WriteOnly)) // the library would say so only at the end
        return fail(m_book->file.path(), probe.errorString());
    m_book->head = m_book->format(nullptr, true);
    for (const ExportColumn& column : columns) {
        const QByteArray digits = column.decimals > 0 ? "0." + QByteArray(column.decimals, '0') : QByteArray("0");
        const bool plain = column.kind == ExportColumn::Text || column.decimals < 0;
        m_book->formats.append(column.kind == ExportColumn::Time ? m_book->format("yyyy-mm-dd hh:mm:ss.000")
                               : plain                           ? nullptr
                                                                 : m_book->format(digits.constData()));
    }
    return startSheet();
}

bool XlsxTable::startSheet()
{
    const int number = m_book->rows.size() + 1;
    const QString name = number == 1 ? m_sheet : QStringLiteral("%1 %2").arg(m_sheet).arg(number);
    m_book->sheet = workbook_add_worksheet(m_book->book, name.toUtf8().constData());
    if (!m_book->sheet)
        return fail(m_book->file.path(), tr("不能建立工作表“%1”").arg(name));
    m_book->rows.append(1);
    for (int i = 0; i < m_columns.size(); ++i) {
        const ExportColumn& column = m_columns.at(i);
        worksheet_set_column(m_book->sheet, lxw_col_t(i), lxw_col_t(i), column.width, nullptr);
        worksheet_write_string(m_book->sheet, 0, lxw_col_t(i), column.title.toUtf8().constData(), m_book->head);
    }
    worksheet_freeze_panes(m_book->sheet, 1, 0);
    return true;
}

void XlsxTable::endSheet()
{
    worksheet_autofilter(m_book->sheet, 0, 0, lxw_row_t(m_book->rows.last() - 1), lxw_col_t(m_columns.size() - 1));
}

bool XlsxTable::add(const Row& row)
{
    if (m_book->rows.last() > m_rowsASheet) {
        endSheet();
        if (!startSheet())
            return false;
    }
    const auto at = lxw_row_t(m_book->rows.last()++);
    for (int i = 0; i < m_columns.size(); ++i) {
        const QVariant& value = row.at(i);
        if (!value.isValid())
            continue;
        const auto column = lxw_col_t(i);
        lxw_format* const format = m_book->formats.at(i);
        if (m_columns.at(i).kind == ExportColumn::Time)
            worksheet_write_number(m_book->sheet, at, column, double(value.toLongLong()) / msADay + dayOf1970, format);
        else if (m_columns.at(i).kind == ExportColumn::Text)
            worksheet_write_string(m_book->sheet, at, column, shortened(value.toString()).toUtf8().constData(), format);
        else if (std::isfinite(value.toDouble()))
            worksheet_write_number(m_book->sheet, at, column, value.toDouble(), format);
    }
    return true;
}

bool XlsxTable::addSheet(const QString& name, const QVector<Row>& lines)
{
    constexpr double width = 22;
    endSheet();
    lxw_worksheet* const sheet = workbook_add_worksheet(m_book->book, name.toUtf8().constData());
    if (!sheet)
        return fail(m_book->file.path(), tr("不能建立工作表“%1”").arg(name));
    worksheet_set_column(sheet, 0, 7, width, nullptr);
    lxw_format* const rounded = m_book->format("0.##");
    lxw_row_t at = 0;
    for (const Row& line : lines) {
        for (int i = 0; i < line.size(); ++i) {
            const QVariant& value = line.at(i);
            if (value.type() == QVariant::String)
                worksheet_write_string(sheet, at, lxw_col_t(i), value.toString().toUtf8().constData(),
                                       i == 0 ? m_book->head : nullptr);
            else if (value.isValid() && std::isfinite(value.toDouble()))
                worksheet_write_number(sheet, at, lxw_col_t(i), value.toDouble(), rounded);
        }
        ++at;
    }
    return true;
}

bool XlsxTable::finish()
{
    if (m_book->book->num_worksheets == m_book->rows.size())
        endSheet();
    const lxw_error error = workbook_close(std::exchange(m_book->book, nullptr));
    const QString path = m_book->file.path();
    if (error != LXW_NO_ERROR)
        return fail(path, QString::fromUtf8(lxw_strerror(error)));
    for (int i = 0; i < m_book->rows.size(); ++i) {
        if (rowsIn(m_book->file.aside(), i + 1) != m_book->rows.at(i))
            return fail(path, tr("没有完整写入，磁盘可能已满（临时文件夹 %1）").arg(QDir::tempPath()));
    }
    const QString reason = m_book->file.commit();
    return reason.isEmpty() || fail(path, reason);
}
