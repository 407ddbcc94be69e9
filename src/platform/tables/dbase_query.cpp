// SPDX-License-Identifier: MIT
#include "platform/tables/dbase_query.h"

#include <algorithm>
#include <array>

#include "gis/errors.h"
#include "gis/text.h"
#include "platform/tables/statement_scanner.h"

namespace velmora::platform {

namespace {

constexpr std::array kWords = {"distinct", "as",      "and",   "or",  "not", "is",  "null", "like",
                               "in",       "between", "count", "sum", "min", "max", "avg"};

bool isBlank(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

std::string trimmed(std::string text) {
    while (!text.empty() && isBlank(text.back())) text.pop_back();
    const auto first = std::ranges::find_if_not(text, isBlank);
    return {first, text.end()};
}

// Where " WHERE " begins, the size of the text when it does not.
std::size_t placeOfWhere(const std::string& text, std::size_t from) {
    constexpr std::string_view kWhere = "where";
    for (std::size_t at = from; at + kWhere.size() + 2 <= text.size(); ++at) {
        if (isBlank(text[at]) && isBlank(text[at + kWhere.size() + 1]) &&
            sameIgnoringCase(std::string_view(text).substr(at + 1, kWhere.size()), kWhere)) {
            return at;
        }
    }
    return text.size();
}

class FieldNames {
  public:
    FieldNames(const std::vector<Field>& fields, const std::string& path)
        : fields_(fields), path_(path) {}

    bool has(const std::string& name) const { return place(name) < fields_.size(); }
    // The column of the field that has the name.
    std::string column(const std::string& name) const {
        if (!has(name)) {
            std::vector<std::string> names;
            for (const Field& field : fields_) names.push_back(field.name);
            throw PlatformError("The table " + path_ + " has no field " + name +
                                    " (its fields: " + joinedNames(names) + ")",
                                {.file = path_, .field = name});
        }
        return "\"" + DbaseQuery::columnName(place(name)) + "\"";
    }
    // The text with the columns of the fields that it names. A word of the language is taken for a
    // field's name in the first place alone.
    std::string rewritten(const std::string& text) const {
        std::string result;
        std::size_t from = 0;
        bool first = true;
        for (const Token& token : tokensOf(text)) {
            const bool language =
                token.kind == TokenKind::word &&
                std::ranges::any_of(kWords, [&](const char* w) { return token.isWord(w); });
            const bool word =
                token.kind == TokenKind::word && (!language || (first && has(token.value)));
            if (word || token.kind == TokenKind::name) {
                result += text.substr(from, token.begin - from) + column(token.value);
                from = token.end;
            }
            first = false;
        }
        return result + text.substr(from);
    }

  private:
    std::size_t place(const std::string& name) const {
        return static_cast<std::size_t>(
            std::ranges::find_if(fields_,
                                 [&](const Field& f) { return sameIgnoringCase(f.name, name); }) -
            fields_.begin());
    }
    const std::vector<Field>& fields_;
    const std::string& path_;
};

}  // namespace

DbaseQuery::DbaseQuery(const std::string& text) {
    const auto refuse = [&] {
        throw PlatformError("The dBASE data source understands SELECT ... FROM table, not \"" +
                            shownStatement(text) + "\"");
    };
    StatementScanner scanner(text);
    const auto select = scanner.next();
    if (!select || !select->isWord("select")) refuse();
    std::optional<Token> token = scanner.next();
    while (token && !token->isWord("from")) token = scanner.next();
    if (!token) refuse();
    columns_ = trimmed(text.substr(select->end, token->begin - select->end));
    std::size_t at = token->end;
    while (at < text.size() && isBlank(text[at])) ++at;
    if (columns_.empty() || at == text.size()) refuse();
    if (text[at] == '[') {
        StatementScanner table(text, at);
        table_ = table.next()->value;
        at = table.position();
    } else {
        const std::size_t end = placeOfWhere(text, at);
        table_ = trimmed(text.substr(at, end - at));
        at = end;
    }
    StatementScanner rest(text, at);
    const auto where = rest.next();
    if (where && !where->isWord("where")) refuse();
    if (where) condition_ = trimmed(text.substr(where->end));
    if (table_.empty() || (where && condition_.empty())) refuse();
}

std::string DbaseQuery::overRecords(const std::vector<Field>& fields,
                                    const std::string& path) const {
    const FieldNames names(fields, path);
    std::string what = "rowid, *";
    if (!wholeRows()) {
        StatementScanner scanner(columns_);
        const auto first = scanner.next();
        // What stands behind DISTINCT may be a name of several words.
        const bool distinct = first->isWord("distinct") && first->end < columns_.size();
        const std::string list = distinct ? trimmed(columns_.substr(first->end)) : columns_;
        what = (distinct ? "DISTINCT " : "") +
               (names.has(list) ? names.column(list) : names.rewritten(list));
    }
    const std::string condition =
        condition_.empty() ? std::string() : " WHERE " + names.rewritten(condition_);
    return "SELECT " + what + " FROM records" + condition;
}

}  // namespace velmora::platform
