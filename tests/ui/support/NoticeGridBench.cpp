#include "support/NoticeGridBench.h"

#include <QHeaderView>
#include <QtTest>

namespace {

std::string Element(const char* Name, const std::string& Value) {
    return Value.empty() ? std::string() : "<" + std::string(Name) + ">" + Value + "</" + Name + ">";
}

} // namespace

std::string NoticeXml(const TTestNotice& n, const std::string& Command) {
    return "<Notice><Command>" + Command + "</Command>" + Element("adpt_id", "TEST") +
           Element("adpt_orig_key", n.Key) + Element("adpt_source_type", "R/Vista") +
           Element("adpt_source_id", n.SourceId) + Element("note_summary", n.Summary) +
           Element("note_text", n.Text) + Element("note_raised_date", n.Raised) +
           Element("note_last_raised_date", n.Raised) + Element("note_count", std::to_string(n.Count)) +
           Element("note_severity", std::to_string(n.Severity)) + Element("note_pvo_node", n.Node) +
           Element("ack_code", "ACK-" + n.Key) + Element("del_code", "DEL-" + n.Key) + "</Notice>";
}

std::string DeleteXml(const std::string& Key) {
    return "<Notice><Command>delete</Command><adpt_orig_key>" + Key + "</adpt_orig_key></Notice>";
}

std::string MessageXml(const std::vector<std::string>& Notices) {
    std::string xml = "<NoticeMessage><NoticeList>";
    for (const std::string& n : Notices)
        xml += n;
    return xml + "</NoticeList></NoticeMessage>";
}

TNoticeGridBench::TNoticeGridBench(int Width, int Height)
    : Grid(std::make_unique<TNoticeBdGrid>(Board.cdsNoticeBd())) {
    Display.SetGrid(Grid.get());
    Grid->SetDisplay(&Display);
    Grid->AssignColumnHeaders();
    CreateDefaultView(Display);
    Grid->resize(Width, Height);
    Grid->show();
    QVERIFY(QTest::qWaitForWindowExposed(Grid.get()));
}

TNoticeGridBench::~TNoticeGridBench() = default;

void TNoticeGridBench::Send(const std::vector<std::string>& Notices) {
    Board.Process_XML_Notice(MessageXml(Notices));
}

void TNoticeGridBench::Post(const std::vector<TTestNotice>& Notices) {
    std::vector<std::string> xml;
    for (const TTestNotice& n : Notices)
        xml.push_back(NoticeXml(n));
    Send(xml);
    Grid->RefreshNow();
}

int32_t TNoticeGridBench::KeyOf(const std::string& OrigKey) {
    int32_t key = 0;
    Board.cdsNoticeBd().ForEachRow([&](const TNoticeRecord& row) {
        if (row.AsString(nf_adpt_orig_key) == OrigKey) key = row.AsInteger(nf_nb_internal_key);
    });
    return key;
}

std::vector<int32_t> TNoticeGridBench::RowKeys() const {
    std::vector<int32_t> keys;
    const QAbstractItemModel* m = Grid->model();
    for (int row = 0; row < m->rowCount(); ++row) {
        const quintptr id = m->index(row, 0).internalId();
        keys.push_back(id >= 0x80000000u ? 0 : int32_t(id));
    }
    return keys;
}

QString TNoticeGridBench::Cell(int Row, TNoticeField Field) const {
    return Grid->model()->index(Row, Field).data().toString();
}

int TNoticeGridBench::RowOf(int32_t Key) const {
    const std::vector<int32_t> keys = RowKeys();
    const auto it = std::find(keys.begin(), keys.end(), Key);
    return it == keys.end() ? -1 : int(it - keys.begin());
}

void TNoticeGridBench::ClickRow(int Row, Qt::KeyboardModifiers Modifiers) {
    const int column = Grid->horizontalHeader()->logicalIndex(0);
    Grid->scrollTo(Grid->model()->index(Row, column));
    const QRect rect = Grid->visualRect(Grid->model()->index(Row, column));
    QTest::mouseClick(Grid->viewport(), Qt::LeftButton, Modifiers,
                      rect.center() + QPoint(rect.width() / 4, 0));
}

void TNoticeGridBench::ClickHeader(TNoticeField Field, Qt::KeyboardModifiers Modifiers) {
    QHeaderView* header = Grid->horizontalHeader();
    const QPoint at(header->sectionViewportPosition(Field) + header->sectionSize(Field) / 2,
                    header->height() / 2);
    QTest::mouseClick(header->viewport(), Qt::LeftButton, Modifiers, at);
}

TTestNotice Notice(const std::string& Key, int Severity, const std::string& Summary,
                   const std::string& Node) {
    TTestNotice n;
    n.Key = Key;
    n.Severity = Severity;
    n.Summary = Summary;
    n.Node = Node;
    return n;
}

QColor RowColour(TNoticeBdGrid& Grid, int Row) {
    const QImage shot = Grid.viewport()->grab().toImage();
    const QRect cell = Grid.visualRect(Grid.model()->index(Row, nf_note_summary));
    return shot.pixelColor(cell.right() - 4, cell.center().y());
}
