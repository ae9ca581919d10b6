#pragma once

#include "db/DataSource.h"

#include <QtCore/QObject>
#include <QtCore/QString>

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace discaro::kit {

class Label;
class TextBox;

// Ties controls to the fields of a data source. When a row becomes the source's current one, or the
// current one has been saved, the controls show it; when the source saves a row (Recordset::Update,
// UpdateRecord), what has been changed in the controls goes into the row's fields first. Moving to
// another row saves nothing and drops what was typed.
//
// A field shows as its text: null as no text, numbers as base::numberText writes them, Yes/No as
// "-1" and "0". A control that still has the text it was given writes nothing, so that a null stays
// null and a text that a box can't hold exactly stays as it is. Where a box was changed, what the
// user left alone in it stays exactly as it was stored, line ends included. An emptied box writes
// "" into a text and null into any other field.
//
// Controls and data source live at least as long as this, or until detach. The controls are told in
// one piece: each has its new text when the first of them raises Change. Errors of the store pass
// through to whoever moved or saved.
class BoundFields : public QObject {
    Q_OBJECT
public:
    explicit BoundFields(QObject* parent = nullptr);
    ~BoundFields() override;

    // Shows the field and writes back what is changed, by the user or by the program.
    void bind(TextBox& box, std::string_view field);
    void bind(Label& label, std::string_view field);
    // Gives the field's text to a control and never writes.
    void follow(std::string_view field, std::function<void(const QString&)> give);

    // Takes over beforeUpdate and repositioned of the data source, which has a recordset, and shows
    // its current row.
    void attach(db::DataSource& source);
    void detach();

    // The text, in UTF-8, that would be written for a bound control: the stored one where the
    // control is untouched.
    std::string text(const QObject& control) const;
    bool isTouched(const QObject& control) const;
    // Whether any bound control is.
    bool isAnyTouched() const;

    // As long as it lives the controls keep what they have, wherever the source moves. To save with
    // the source standing on another row than the one the controls show throws RecordGone.
    class Hold {
    public:
        explicit Hold(BoundFields& fields)
            : m_fields(fields) {
            ++m_fields.m_holds;
        }
        ~Hold() { --m_fields.m_holds; }
        Hold(const Hold&) = delete;
        Hold& operator=(const Hold&) = delete;

    private:
        BoundFields& m_fields;
    };

signals:
    // The source has come to stand on a row. The controls do not show it yet.
    void Reposition();
    // The controls show the current row, all of their Change notifications behind them. Also when
    // there is no row: then they are empty.
    void RowShown();

private:
    struct Binding {
        const QObject* control = nullptr; // null when it only shows
        std::string field;
        bool mends = false; // the control is a box with several lines
        std::function<QString()> read;
        std::function<void(const QString&)> give; // without a notification
        std::function<void()> notify;             // raises Change
        QString stored;                           // the field's text
        QString given;                            // what the control made of it
        QString savedStored;                      // what was last written, and the control's text at that moment
        QString savedGiven;

        bool isTouched() const { return read && read() != given; }
        std::string value() const;
    };

    void add(Binding binding, std::string_view field);
    const Binding& bindingOf(const QObject& control) const;
    void showRow();
    std::vector<QString> readRow(bool& onRow) const;
    static bool giveText(Binding& binding, const QString& text);
    std::optional<int64_t> currentRow() const;
    void writeRow();

    std::vector<Binding> m_bindings;
    db::DataSource* m_source = nullptr;
    std::optional<int64_t> m_shownRow;
    int m_holds = 0;
};

// The text to store when `stored` was edited in a box with several lines, which holds it in another
// form: all line ends alike, no-break spaces as spaces. The beginning and the end that were left
// alone stay as they are stored; what is new between them gets the line ends that the stored text
// has, a carriage return with a line feed where it has none.
QString mendedText(const QString& stored, const QString& edited);

} // namespace discaro::kit
