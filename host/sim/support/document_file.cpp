#include "sim/support/document_file.h"

#include <charconv>
#include <functional>
#include <map>
#include <optional>

#include "sim/support/text.h"

namespace tvsim {
namespace {

constexpr std::string_view kHeader = "tvsim-document";

// ---- writing ----

void AppendEscaped(std::string& out, const tvapi::WString& text) {
    static const char kHex[] = "0123456789ABCDEF";
    auto hex_unit = [&](char16_t u) {
        out += "\\u";
        for (int shift = 12; shift >= 0; shift -= 4) out += kHex[(u >> shift) & 0xF];
    };
    out += '"';
    for (std::size_t i = 0; i < text.size(); ++i) {
        auto u = static_cast<char16_t>(text[i]);
        bool high = u >= 0xD800 && u < 0xDC00;
        bool low = u >= 0xDC00 && u < 0xE000;
        if (high && i + 1 < text.size() && static_cast<char16_t>(text[i + 1]) >= 0xDC00 &&
            static_cast<char16_t>(text[i + 1]) < 0xE000) {
            out += ToUtf8(text.substr(i, 2));
            ++i;
        } else if (high || low) {
            hex_unit(u);  // unpaired: kept exactly
        } else if (u == u'"') {
            out += "\\\"";
        } else if (u == u'\\') {
            out += "\\\\";
        } else if (u == u'\n') {
            out += "\\n";
        } else if (u == u'\r') {
            out += "\\r";
        } else if (u == u'\t') {
            out += "\\t";
        } else if (u < 0x20) {
            hex_unit(u);
        } else {
            out += ToUtf8(tvapi::WString(1, text[i]));
        }
    }
    out += '"';
}

class RecordWriter {
public:
    RecordWriter& Key(std::string_view key) {
        if (!out_.empty()) out_ += '\n';
        out_ += key;
        return *this;
    }
    RecordWriter& Int(long long v) { return Bare(std::to_string(v)); }
    RecordWriter& Id(std::uint64_t v) { return Bare(std::to_string(v)); }
    RecordWriter& Number(double v) { return Bare(FormatNumber(v)); }
    RecordWriter& Flag(bool v) { return Bare(v ? "1" : "0"); }
    RecordWriter& Text(const tvapi::WString& v) {
        out_ += ' ';
        AppendEscaped(out_, v);
        return *this;
    }
    std::string Finish() { return out_ + '\n'; }

private:
    RecordWriter& Bare(const std::string& token) {
        out_ += ' ';
        out_ += token;
        return *this;
    }
    std::string out_;
};

// ---- reading ----

struct Token {
    bool quoted = false;
    std::string bare;
    tvapi::WString text;
};

bool HexUnit(std::string_view line, std::size_t at, char16_t& unit) {
    if (at + 4 > line.size()) return false;
    unsigned value = 0;
    auto [end, error] = std::from_chars(line.data() + at, line.data() + at + 4, value, 16);
    if (error != std::errc() || end != line.data() + at + 4) return false;
    unit = static_cast<char16_t>(value);
    return true;
}

// A quoted token from `at` (on the opening quote); advances past the closing one.
bool QuotedToken(std::string_view line, std::size_t& at, tvapi::WString& text) {
    std::string run;  // plain UTF-8 since the last escape
    auto flush = [&]() {
        tvapi::WString part;
        if (!FromUtf8(run, part)) return false;
        text += part;
        run.clear();
        return true;
    };
    for (++at; at < line.size(); ++at) {
        char c = line[at];
        if (c == '"') {
            ++at;
            return flush();
        }
        if (c != '\\') {
            run += c;
            continue;
        }
        if (++at >= line.size() || !flush()) return false;
        switch (line[at]) {
            case '"': text += u'"'; break;
            case '\\': text += u'\\'; break;
            case 'n': text += u'\n'; break;
            case 'r': text += u'\r'; break;
            case 't': text += u'\t'; break;
            case 'u': {
                char16_t unit;
                if (!HexUnit(line, at + 1, unit)) return false;
                text += static_cast<tvapi::WChar>(unit);
                at += 4;
                break;
            }
            default: return false;
        }
    }
    return false;  // no closing quote
}

std::optional<std::vector<Token>> Tokenize(std::string_view line) {
    std::vector<Token> tokens;
    std::size_t at = 0;
    while (at < line.size()) {
        if (line[at] == ' ') {
            ++at;
            continue;
        }
        Token token;
        if (line[at] == '"') {
            token.quoted = true;
            if (!QuotedToken(line, at, token.text)) return std::nullopt;
            if (at < line.size() && line[at] != ' ') return std::nullopt;
        } else {
            std::size_t end = line.find(' ', at);
            if (end == std::string_view::npos) end = line.size();
            token.bare = std::string(line.substr(at, end - at));
            at = end;
        }
        tokens.push_back(std::move(token));
    }
    return tokens;
}

// Takes a record's fields in order; any mismatch marks the record failed.
class Fields {
public:
    explicit Fields(const std::vector<Token>& tokens) : tokens_(tokens) {}

    int Int() {
        int v = 0;
        if (const Token* t = Next(false); !t || !ParseInt(t->bare, v)) failed_ = true;
        return v;
    }
    std::uint64_t Id() {
        std::uint64_t v = 0;
        const Token* t = Next(false);
        if (!t) return 0;
        auto [end, error] = std::from_chars(t->bare.data(), t->bare.data() + t->bare.size(), v);
        if (error != std::errc() || end != t->bare.data() + t->bare.size() || t->bare.empty()) failed_ = true;
        return v;
    }
    double Number() {
        double v = 0.0;
        if (const Token* t = Next(false); !t || !ParseNumber(t->bare, v) || !AllFinite({v})) failed_ = true;
        return v;
    }
    bool Flag() {
        const Token* t = Next(false);
        if (!t || (t->bare != "0" && t->bare != "1")) {
            failed_ = true;
            return false;
        }
        return t->bare == "1";
    }
    tvapi::WString Text() {
        const Token* t = Next(true);
        return t ? t->text : tvapi::WString();
    }
    bool More() const { return next_ < tokens_.size(); }
    bool Ok() const { return !failed_ && next_ == tokens_.size(); }

private:
    // A token of the wrong kind is passed over too, so that reading to the
    // end of a record always ends.
    const Token* Next(bool quoted) {
        if (next_ >= tokens_.size() || tokens_[next_].quoted != quoted) {
            failed_ = true;
            if (next_ < tokens_.size()) ++next_;
            return nullptr;
        }
        return &tokens_[next_++];
    }
    const std::vector<Token>& tokens_;
    std::size_t next_ = 1;  // after the key
    bool failed_ = false;
};

// Each record's reader takes its fields and, only when they all read,
// fills the document; false rejects the record and changes nothing.
using RecordReader = std::function<bool(Fields&, DocumentData&)>;

template <class T, T (Fields::*Take)()>
RecordReader Scalar(T DocumentData::*member) {
    return [member](Fields& f, DocumentData& d) {
        T value = (f.*Take)();
        if (!f.Ok()) return false;
        d.*member = std::move(value);
        return true;
    };
}
constexpr auto IntField = Scalar<int, &Fields::Int>;
constexpr auto NumberField = Scalar<double, &Fields::Number>;
constexpr auto FlagField = Scalar<bool, &Fields::Flag>;
constexpr auto TextField = Scalar<tvapi::WString, &Fields::Text>;

bool ReadLayer(Fields& f, DocumentData& d) {
    LayerData l;
    l.number = f.Int();
    l.name = f.Text();
    l.comment = f.Text();
    l.color = f.Int();
    l.visible = f.Flag();
    l.printable = f.Flag();
    l.background = f.Flag();
    if (!f.Ok()) return false;
    for (const auto& other : d.layers) {
        if (other.number == l.number) return false;
    }
    d.layers.push_back(std::move(l));
    return true;
}

bool ReadLayerGroup(Fields& f, DocumentData& d) {
    LayerGroupData g;
    g.name = f.Text();
    while (f.More()) g.layers.push_back(f.Int());
    if (!f.Ok()) return false;
    d.layer_groups.push_back(std::move(g));
    return true;
}

bool ReadView(Fields& f, DocumentData& d) {
    ViewData v;
    v.number = f.Int();
    v.type = f.Int();
    v.name = f.Text();
    v.comment = f.Text();
    v.x = f.Number();
    v.y = f.Number();
    v.scale = f.Number();
    v.angle = f.Number();
    v.color = f.Int();
    v.visible = f.Flag();
    v.printable = f.Flag();
    v.background = f.Flag();
    if (!f.Ok() || v.scale <= 0.0) return false;
    for (const auto& other : d.views) {
        if (other.number == v.number) return false;
    }
    d.views.push_back(std::move(v));
    return true;
}

// A segment belongs to the view record before it.
bool ReadSegment(Fields& f, DocumentData& d) {
    SegmentData s;
    DrawingObjectData& c = s.common;
    c.id = f.Id();
    s.start.x = f.Number();
    s.start.y = f.Number();
    s.end.x = f.Number();
    s.end.y = f.Number();
    s.angle = f.Number();
    c.layer = f.Int();
    c.style = f.Int();
    c.transparent = f.Flag();
    c.auto_transparent = f.Flag();
    c.param_type = f.Int();
    c.light_type = f.Int();
    c.link_type = f.Int();
    c.link = f.Text();
    if (!f.Ok() || d.views.empty() || c.id == 0) return false;
    d.views.back().segments.push_back(std::move(s));
    return true;
}

bool ReadVariable(Fields& f, DocumentData& d) {
    VariableData v;
    v.type = f.Int();
    v.name = f.Text();
    v.expression = f.Text();
    v.value = f.Number();
    v.second = f.Number();
    v.note = f.Text();
    v.read_only = f.Flag();
    v.external = f.Flag();
    v.information = f.Flag();
    if (!f.Ok()) return false;
    d.variables.push_back(std::move(v));
    return true;
}

bool ReadLoadCombination(Fields& f, DocumentData& d) {
    tvapi::WString name = f.Text();
    if (!f.Ok()) return false;
    d.load_combinations.push_back(std::move(name));
    return true;
}

const std::map<std::string, RecordReader, std::less<>>& Records() {
    static const std::map<std::string, RecordReader, std::less<>> records = {
        {"type", IntField(&DocumentData::type)},
        {"type-id", TextField(&DocumentData::type_id)},
        {"author", TextField(&DocumentData::author)},
        {"comment", TextField(&DocumentData::comment)},
        {"organization", TextField(&DocumentData::organization)},
        {"metadata", TextField(&DocumentData::metadata)},
        {"toolbar-set", TextField(&DocumentData::toolbar_set)},
        {"created", NumberField(&DocumentData::created)},
        {"last-change", NumberField(&DocumentData::last_change)},
        {"load-combination", ReadLoadCombination},
        {"active-combination", IntField(&DocumentData::active_combination)},
        {"parametric", FlagField(&DocumentData::parametric)},
        {"orthogonal", FlagField(&DocumentData::orthogonal)},
        {"layer", ReadLayer},
        {"current-layer", IntField(&DocumentData::current_layer)},
        {"layer-group", ReadLayerGroup},
        {"current-layer-group", IntField(&DocumentData::current_layer_group)},
        {"view", ReadView},
        {"current-view", IntField(&DocumentData::current_view)},
        {"segment", ReadSegment},
        {"variable", ReadVariable},
    };
    return records;
}

std::vector<std::string_view> Lines(std::string_view bytes) {
    std::vector<std::string_view> lines;
    while (!bytes.empty()) {
        std::size_t end = bytes.find('\n');
        std::string_view line = bytes.substr(0, end);
        if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
        lines.push_back(line);
        if (end == std::string_view::npos) break;
        bytes.remove_prefix(end + 1);
    }
    return lines;
}

}  // namespace

std::string FormatDocument(const DocumentData& d) {
    RecordWriter w;
    w.Key(kHeader).Int(kDocumentFormatVersion);
    w.Key("type").Int(d.type);
    w.Key("type-id").Text(d.type_id);
    w.Key("author").Text(d.author);
    w.Key("comment").Text(d.comment);
    w.Key("organization").Text(d.organization);
    w.Key("metadata").Text(d.metadata);
    w.Key("toolbar-set").Text(d.toolbar_set);
    w.Key("created").Number(d.created);
    w.Key("last-change").Number(d.last_change);
    for (const auto& name : d.load_combinations) w.Key("load-combination").Text(name);
    w.Key("active-combination").Int(d.active_combination);
    if (!d.views.empty()) {
        w.Key("parametric").Flag(d.parametric);
        w.Key("orthogonal").Flag(d.orthogonal);
        for (const auto& l : d.layers) {
            w.Key("layer").Int(l.number).Text(l.name).Text(l.comment).Int(l.color);
            w.Flag(l.visible).Flag(l.printable).Flag(l.background);
        }
        w.Key("current-layer").Int(d.current_layer);
        for (const auto& g : d.layer_groups) {
            w.Key("layer-group").Text(g.name);
            for (int number : g.layers) w.Int(number);
        }
        w.Key("current-layer-group").Int(d.current_layer_group);
        for (const auto& v : d.views) {
            w.Key("view").Int(v.number).Int(v.type).Text(v.name).Text(v.comment);
            w.Number(v.x).Number(v.y).Number(v.scale).Number(v.angle).Int(v.color);
            w.Flag(v.visible).Flag(v.printable).Flag(v.background);
            for (const auto& s : v.segments) {
                const DrawingObjectData& c = s.common;
                w.Key("segment").Id(c.id).Number(s.start.x).Number(s.start.y).Number(s.end.x).Number(s.end.y);
                w.Number(s.angle).Int(c.layer).Int(c.style).Flag(c.transparent).Flag(c.auto_transparent);
                w.Int(c.param_type).Int(c.light_type).Int(c.link_type).Text(c.link);
            }
        }
        w.Key("current-view").Int(d.current_view);
        for (const auto& v : d.variables) {
            w.Key("variable").Int(v.type).Text(v.name).Text(v.expression).Number(v.value).Number(v.second);
            w.Text(v.note).Flag(v.read_only).Flag(v.external).Flag(v.information);
        }
    }
    w.Key("end");
    return w.Finish();
}

ReadResult ParseDocument(std::string_view bytes, bool recover) {
    ReadResult result;
    std::vector<std::string_view> lines = Lines(bytes);
    std::optional<std::vector<Token>> header;
    if (!lines.empty()) header = Tokenize(lines[0]);
    int version = 0;
    if (!header || header->size() != 2 || (*header)[0].bare != kHeader || !ParseInt((*header)[1].bare, version) ||
        version != kDocumentFormatVersion) {
        result.error = ReadError::kNotDocument;
        return result;
    }
    result.format_version = version;
    bool ended = false;
    auto damaged = [&](int line_number) {
        result.error = ReadError::kDamaged;
        result.skipped_lines.push_back(line_number);
        return recover;
    };
    for (std::size_t i = 1; i < lines.size() && !ended; ++i) {
        int line_number = static_cast<int>(i) + 1;
        if (lines[i].empty()) continue;
        auto tokens = Tokenize(lines[i]);
        if (!tokens || tokens->empty() || (*tokens)[0].quoted) {
            if (!damaged(line_number)) return result;
            continue;
        }
        const std::string& key = (*tokens)[0].bare;
        if (key == "end" && tokens->size() == 1) {
            ended = true;
            continue;
        }
        auto record = Records().find(key);
        Fields fields(*tokens);
        if (record == Records().end() || !record->second(fields, result.data)) {
            if (!damaged(line_number)) return result;
        }
    }
    if (!ended && !damaged(static_cast<int>(lines.size()) + 1)) return result;
    result.ok = true;
    return result;
}

bool WriteDocumentFile(const tvapi::WString& path, const DocumentData& data) {
    return WriteWholeFile(path, FormatDocument(data));
}

ReadResult ReadDocumentFile(const tvapi::WString& path, bool recover) {
    std::string bytes;
    if (!ReadWholeFile(path, bytes)) {
        ReadResult result;
        result.error = ReadError::kUnreadable;
        return result;
    }
    return ParseDocument(bytes, recover);
}

}  // namespace tvsim
