#include "LayoutReader.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMarginsF>
#include <QPageSize>

namespace LayoutReader {

namespace {

const QString DefaultFamily = QStringLiteral("DejaVu Sans");
constexpr double DefaultFontSize = 8;
constexpr double DefaultMargin = 12;

/** Reads one layout, keeping the first problem met; later reads then do nothing. */
class Reader
{
public:
    explicit Reader(const QString& name) : m_name(name) {}

    std::optional<ReportLayout> layout(const QJsonObject& root);
    QString error() const { return m_error; }

private:
    bool fail(const QString& problem);
    bool onlyKeys(const QJsonObject& object, const QString& where, const QStringList& keys);
    QString text(const QJsonObject& object, const QString& key);
    double number(const QJsonObject& object, const QString& key, double fallback);
    Qt::Alignment alignment(const QJsonObject& object, Qt::Alignment fallback);
    QList<QJsonObject> objects(const QJsonObject& parent, const QString& key);

    void readPage(const QJsonObject& page, ReportLayout* layout);
    void readFont(const QJsonObject& font, ReportLayout* layout);
    void readHeader(const QJsonObject& root, ReportLayout* layout);
    void readColumns(const QJsonObject& root, ReportLayout* layout);
    void readGroups(const QJsonObject& root, ReportLayout* layout);
    QList<ReportTotal> totals(const QJsonValue& value, const ReportLayout& layout,
                              const QString& where);
    void readFooters(const QJsonObject& root, ReportLayout* layout);

    QString m_name;
    QString m_error;
};

bool Reader::fail(const QString& problem)
{
    if (m_error.isEmpty()) {
        m_error = QStringLiteral("The report layout %1 is damaged: %2").arg(m_name, problem);
    }
    return false;
}

bool Reader::onlyKeys(const QJsonObject& object, const QString& where, const QStringList& keys)
{
    for (auto it = object.begin(); it != object.end(); ++it) {
        if (!keys.contains(it.key())) {
            return fail(QStringLiteral("%1 has an unknown key \"%2\".").arg(where, it.key()));
        }
    }
    return true;
}

QString Reader::text(const QJsonObject& object, const QString& key)
{
    const QJsonValue value = object.value(key);
    if (!value.isUndefined() && !value.isString()) {
        fail(QStringLiteral("\"%1\" must be a text.").arg(key));
    }
    return value.toString();
}

double Reader::number(const QJsonObject& object, const QString& key, double fallback)
{
    const QJsonValue value = object.value(key);
    if (value.isUndefined()) {
        return fallback;
    }
    if (!value.isDouble() || value.toDouble() < 0) {
        fail(QStringLiteral("\"%1\" must be a number of 0 or more.").arg(key));
    }
    return value.toDouble();
}

Qt::Alignment Reader::alignment(const QJsonObject& object, Qt::Alignment fallback)
{
    const QString name = text(object, QStringLiteral("align"));
    if (name.isEmpty()) {
        return fallback;
    }
    if (name == QLatin1String("left")) {
        return Qt::AlignLeft;
    }
    if (name == QLatin1String("center")) {
        return Qt::AlignHCenter;
    }
    if (name == QLatin1String("right")) {
        return Qt::AlignRight;
    }
    fail(QStringLiteral("the alignment \"%1\" is none of left, center, right.").arg(name));
    return fallback;
}

QList<QJsonObject> Reader::objects(const QJsonObject& parent, const QString& key)
{
    const QJsonValue value = parent.value(key);
    if (value.isUndefined()) {
        return {};
    }
    if (!value.isArray()) {
        fail(QStringLiteral("\"%1\" must be a list.").arg(key));
        return {};
    }
    QList<QJsonObject> list;
    for (const QJsonValue& item : value.toArray()) {
        if (!item.isObject()) {
            fail(QStringLiteral("every entry of \"%1\" must be an object.").arg(key));
            return {};
        }
        list.append(item.toObject());
    }
    return list;
}

void Reader::readPage(const QJsonObject& page, ReportLayout* layout)
{
    onlyKeys(page, QStringLiteral("The page"),
             {QStringLiteral("size"), QStringLiteral("orientation"), QStringLiteral("margins")});
    static const QList<std::pair<QString, QPageSize::PageSizeId>> sizes{
        {QStringLiteral("Letter"), QPageSize::Letter},
        {QStringLiteral("Legal"), QPageSize::Legal},
        {QStringLiteral("A4"), QPageSize::A4}};
    const QString sizeName = text(page, QStringLiteral("size"));
    QPageSize::PageSizeId size = QPageSize::Letter;
    if (!sizeName.isEmpty()) {
        auto it = std::find_if(sizes.begin(), sizes.end(),
                               [&](const auto& entry) { return entry.first == sizeName; });
        if (it == sizes.end()) {
            fail(
                QStringLiteral("the page size \"%1\" is none of Letter, Legal, A4.").arg(sizeName));
        } else {
            size = it->second;
        }
    }
    const QString orientation = text(page, QStringLiteral("orientation"));
    if (!orientation.isEmpty() && orientation != QLatin1String("portrait") &&
        orientation != QLatin1String("landscape")) {
        fail(QStringLiteral("the orientation \"%1\" is neither portrait nor landscape.")
                 .arg(orientation));
    }
    const QJsonObject margins = page.value(QStringLiteral("margins")).toObject();
    onlyKeys(margins, QStringLiteral("The margins"),
             {QStringLiteral("left"), QStringLiteral("top"), QStringLiteral("right"),
              QStringLiteral("bottom")});
    const QMarginsF inMm(number(margins, QStringLiteral("left"), DefaultMargin),
                         number(margins, QStringLiteral("top"), DefaultMargin),
                         number(margins, QStringLiteral("right"), DefaultMargin),
                         number(margins, QStringLiteral("bottom"), DefaultMargin));
    layout->page = QPageLayout(QPageSize(size),
                               orientation == QLatin1String("landscape") ? QPageLayout::Landscape
                                                                         : QPageLayout::Portrait,
                               inMm, QPageLayout::Millimeter);
}

void Reader::readFont(const QJsonObject& font, ReportLayout* layout)
{
    onlyKeys(font, QStringLiteral("The font"), {QStringLiteral("family"), QStringLiteral("size")});
    layout->fontFamily = text(font, QStringLiteral("family"));
    if (layout->fontFamily.isEmpty()) {
        layout->fontFamily = DefaultFamily;
    }
    layout->fontSize = number(font, QStringLiteral("size"), DefaultFontSize);
    if (layout->fontSize <= 0) {
        fail(QStringLiteral("the font size must be above 0."));
    }
}

void Reader::readHeader(const QJsonObject& root, ReportLayout* layout)
{
    int row = -1;
    for (const QJsonObject& item : objects(root, QStringLiteral("pageHeader"))) {
        TextObject object;
        object.name = text(item, QStringLiteral("name"));
        onlyKeys(item, QStringLiteral("The text object %1").arg(object.name),
                 {QStringLiteral("name"), QStringLiteral("text"), QStringLiteral("row"),
                  QStringLiteral("left"), QStringLiteral("width"), QStringLiteral("size"),
                  QStringLiteral("bold"), QStringLiteral("align")});
        if (object.name.isEmpty()) {
            fail(QStringLiteral("a text object of the page header has no name."));
        } else if (layout->textObject(object.name)) {
            fail(QStringLiteral("the text object %1 stands twice.").arg(object.name));
        }
        object.text = text(item, QStringLiteral("text"));
        row = int(number(item, QStringLiteral("row"), row + 1));
        object.row = row;
        object.left = number(item, QStringLiteral("left"), 0);
        object.width = number(item, QStringLiteral("width"), 0);
        object.style = {number(item, QStringLiteral("size"), 0),
                        item.value(QStringLiteral("bold")).toBool(),
                        alignment(item, Qt::AlignLeft)};
        layout->header.append(object);
    }
}

void Reader::readColumns(const QJsonObject& root, ReportLayout* layout)
{
    for (const QJsonObject& item : objects(root, QStringLiteral("columns"))) {
        ReportColumn column;
        column.field = text(item, QStringLiteral("field"));
        onlyKeys(item, QStringLiteral("The column %1").arg(column.field),
                 {QStringLiteral("field"), QStringLiteral("caption"), QStringLiteral("width"),
                  QStringLiteral("align"), QStringLiteral("format"), QStringLiteral("decimals"),
                  QStringLiteral("pattern"), QStringLiteral("wrap")});
        if (column.field.isEmpty()) {
            fail(QStringLiteral("a column has no field."));
        }
        column.caption = item.contains(QStringLiteral("caption"))
                             ? text(item, QStringLiteral("caption"))
                             : column.field;
        column.width = number(item, QStringLiteral("width"), 0);
        if (column.width <= 0) {
            fail(QStringLiteral("the column %1 needs a width above 0.").arg(column.field));
        }
        const QString format = text(item, QStringLiteral("format"));
        if (!format.isEmpty() && !ValueFormat::fromName(format, &column.format)) {
            fail(QStringLiteral("the format \"%1\" of the column %2 is unknown.")
                     .arg(format, column.field));
        }
        column.format.decimals = int(number(item, QStringLiteral("decimals"), 2));
        column.format.pattern = text(item, QStringLiteral("pattern"));
        column.align = alignment(item, column.format.isNumeric() ? Qt::AlignRight : Qt::AlignLeft);
        column.wrap = item.value(QStringLiteral("wrap")).toBool();
        layout->columns.append(column);
    }
    if (layout->columns.isEmpty()) {
        fail(QStringLiteral("it has no columns."));
    }
}

QList<ReportTotal> Reader::totals(const QJsonValue& value, const ReportLayout& layout,
                                  const QString& where)
{
    QList<ReportTotal> list;
    for (const QJsonValue& item : value.toArray()) {
        ReportTotal total;
        const QJsonObject object = item.toObject();
        total.field = item.isString() ? item.toString() : text(object, QStringLiteral("field"));
        const QString function = text(object, QStringLiteral("function"));
        if (function == QLatin1String("count")) {
            total.function = ReportTotal::Function::Count;
        } else if (!function.isEmpty() && function != QLatin1String("sum")) {
            fail(QStringLiteral("the total function \"%1\" is neither sum nor count.")
                     .arg(function));
        }
        if (layout.columnOf(total.field) < 0) {
            fail(QStringLiteral("%1 totals the field \"%2\", which no column shows.")
                     .arg(where, total.field));
        }
        list.append(total);
    }
    return list;
}

void Reader::readGroups(const QJsonObject& root, ReportLayout* layout)
{
    for (const QJsonObject& item : objects(root, QStringLiteral("groups"))) {
        ReportGroup group;
        group.field = text(item, QStringLiteral("field"));
        onlyKeys(item, QStringLiteral("The group on %1").arg(group.field),
                 {QStringLiteral("field"), QStringLiteral("header"), QStringLiteral("footer"),
                  QStringLiteral("totals")});
        if (group.field.isEmpty()) {
            fail(QStringLiteral("a group has no field."));
        }
        group.header = item.contains(QStringLiteral("header"))
                           ? text(item, QStringLiteral("header"))
                           : QStringLiteral("{value}");
        group.footerLabel = text(item, QStringLiteral("footer"));
        group.totals = totals(item.value(QStringLiteral("totals")), *layout,
                              QStringLiteral("The group on %1").arg(group.field));
        layout->groups.append(group);
    }
}

void Reader::readFooters(const QJsonObject& root, ReportLayout* layout)
{
    const QJsonObject footer = root.value(QStringLiteral("reportFooter")).toObject();
    onlyKeys(footer, QStringLiteral("The report footer"),
             {QStringLiteral("label"), QStringLiteral("totals")});
    layout->footer.label = text(footer, QStringLiteral("label"));
    layout->footer.totals = totals(footer.value(QStringLiteral("totals")), *layout,
                                   QStringLiteral("The report footer"));

    const QJsonObject pageFooter = root.value(QStringLiteral("pageFooter")).toObject();
    onlyKeys(pageFooter, QStringLiteral("The page footer"),
             {QStringLiteral("text"), QStringLiteral("align")});
    layout->pageFooter = pageFooter.contains(QStringLiteral("text"))
                             ? text(pageFooter, QStringLiteral("text"))
                             : QStringLiteral("Page {page} of {pages}");
    layout->pageFooterAlign = alignment(pageFooter, Qt::AlignRight);
}

std::optional<ReportLayout> Reader::layout(const QJsonObject& root)
{
    onlyKeys(root, QStringLiteral("The layout"),
             {QStringLiteral("title"), QStringLiteral("page"), QStringLiteral("font"),
              QStringLiteral("pageHeader"), QStringLiteral("columns"), QStringLiteral("groups"),
              QStringLiteral("reportFooter"), QStringLiteral("pageFooter")});
    ReportLayout layout;
    layout.name = m_name;
    layout.title = text(root, QStringLiteral("title"));
    readPage(root.value(QStringLiteral("page")).toObject(), &layout);
    readFont(root.value(QStringLiteral("font")).toObject(), &layout);
    readHeader(root, &layout);
    readColumns(root, &layout);
    readGroups(root, &layout);
    readFooters(root, &layout);
    if (!m_error.isEmpty()) {
        return std::nullopt;
    }
    return layout;
}

} // namespace

std::optional<ReportLayout> parse(const QByteArray& text, const QString& name, QString* error)
{
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(text, &parseError);
    Reader reader(name);
    if (!document.isObject()) {
        *error = QStringLiteral("The report layout %1 is damaged: it is no layout file (%2).")
                     .arg(name, parseError.error == QJsonParseError::NoError
                                    ? QStringLiteral("not an object")
                                    : parseError.errorString());
        return std::nullopt;
    }
    std::optional<ReportLayout> layout = reader.layout(document.object());
    if (!layout) {
        *error = reader.error();
    }
    return layout;
}

std::optional<ReportLayout> read(const QString& path, QString* error)
{
    const QString name = QFileInfo(path).completeBaseName();
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        *error = QStringLiteral("The report layout %1 cannot be opened: %2")
                     .arg(path, file.errorString());
        return std::nullopt;
    }
    return parse(file.readAll(), name, error);
}

} // namespace LayoutReader
