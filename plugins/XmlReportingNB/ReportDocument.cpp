#include "ReportDocument.h"

#include <QHash>
#include <QXmlStreamReader>

namespace {

// Everything a well-formed document may not hold becomes readable text instead.
QString CleanText(const char* Xml) {
    QString text = QString::fromUtf8(Xml); // invalid sequences become U+FFFD
    for (QChar& c : text)
        if (c.unicode() < 0x20 && c != u'\t' && c != u'\n' && c != u'\r') c = u' ';
    return text;
}

// The names of the empty elements inside the current element (<selectFields><a/><b/></selectFields>).
QStringList ChildNames(QXmlStreamReader& Reader) {
    QStringList names;
    while (Reader.readNextStartElement()) {
        names << Reader.name().toString();
        Reader.skipCurrentElement();
    }
    return names;
}

struct TRawDocument {
    QString Title;
    std::vector<TReportField> Fields; // in document order; the first definition of a name counts
    QStringList Selected, GroupNames, GroupByBand;
    std::vector<QXmlStreamAttributes> Rows;
};

void ReadReport(QXmlStreamReader& Reader, TRawDocument& Doc) {
    while (Reader.readNextStartElement()) {
        const auto name = Reader.name();
        if (name == u"title") {
            Doc.Title = Reader.readElementText(QXmlStreamReader::IncludeChildElements).simplified();
        } else if (name == u"fieldDefinitions") {
            while (Reader.readNextStartElement()) {
                if (Reader.name() == u"field") {
                    const QXmlStreamAttributes a = Reader.attributes();
                    if (a.value(QLatin1String("ignore")).compare(u"Y", Qt::CaseInsensitive) != 0)
                        Doc.Fields.push_back(
                            {a.value(QLatin1String("name")).toString(),
                             a.value(QLatin1String("caption")).toString(),
                             a.value(QLatin1String("width")).toInt(),
                             a.value(QLatin1String("fieldDef")).compare(u"numeric", Qt::CaseInsensitive) ==
                                 0});
                }
                Reader.skipCurrentElement();
            }
        } else if (name == u"selectFields") {
            Doc.Selected = ChildNames(Reader);
        } else if (name == u"GroupByFields") {
            Doc.GroupNames = ChildNames(Reader);
        } else if (name == u"groupBy") {
            while (Reader.readNextStartElement()) {
                Doc.GroupByBand << Reader.attributes().value(QLatin1String("name")).toString();
                Reader.skipCurrentElement();
            }
        } else if (name == u"rows") {
            while (Reader.readNextStartElement()) {
                if (Reader.name() == u"row") Doc.Rows.push_back(Reader.attributes());
                Reader.skipCurrentElement();
            }
        } else {
            Reader.skipCurrentElement();
        }
    }
}

} // namespace

std::optional<TReportDocument> ReadReportDocument(const char* Xml, QString& Error) {
    QXmlStreamReader reader(CleanText(Xml));
    TRawDocument raw;
    bool isReport = false;
    if (reader.readNextStartElement()) {
        if (reader.name() != u"report") {
            Error = QStringLiteral("The document is not a report (its root element is <%1>).")
                        .arg(reader.name().toString());
            return std::nullopt;
        }
        isReport = true;
        ReadReport(reader, raw);
    }
    // Read to the end: text after the root element makes the document malformed too.
    while (!reader.atEnd() && !reader.hasError())
        reader.readNext();
    if (reader.hasError()) {
        Error = QStringLiteral("The report XML is not well-formed (line %1, column %2): %3")
                    .arg(reader.lineNumber())
                    .arg(reader.columnNumber())
                    .arg(reader.errorString());
        return std::nullopt;
    }
    if (!isReport) {
        Error = QStringLiteral("The document is empty.");
        return std::nullopt;
    }

    QHash<QString, const TReportField*> byName;
    for (const TReportField& f : raw.Fields)
        if (!byName.contains(f.Name)) byName.insert(f.Name, &f);
    const auto fieldsNamed = [&](const QStringList& names) {
        std::vector<TReportField> fields;
        for (const QString& n : names)
            if (const TReportField* f = byName.value(n)) fields.push_back(*f);
        return fields;
    };

    TReportDocument doc;
    doc.Title = raw.Title;
    doc.Groups = fieldsNamed(raw.GroupNames.isEmpty() ? raw.GroupByBand : raw.GroupNames);
    if (!raw.Selected.isEmpty()) {
        doc.Columns = fieldsNamed(raw.Selected);
    } else {
        // Without a column list every defined field prints, the group fields in their bands only.
        QStringList names;
        for (const TReportField& f : raw.Fields)
            if (!names.contains(f.Name) && !(raw.GroupNames + raw.GroupByBand).contains(f.Name))
                names << f.Name;
        doc.Columns = fieldsNamed(names);
    }
    doc.Rows.reserve(raw.Rows.size());
    for (const QXmlStreamAttributes& a : raw.Rows) {
        QStringList values;
        values.reserve(int(doc.Columns.size() + doc.Groups.size()));
        for (const auto* fields : {&doc.Columns, &doc.Groups})
            for (const TReportField& f : *fields)
                values << a.value(f.Name).toString();
        doc.Rows.push_back(std::move(values));
    }
    return doc;
}
