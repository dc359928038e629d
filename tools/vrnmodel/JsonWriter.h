// A streaming JSON writer for the client's documents: the JSON report and
// the model data a diagram page carries.
#pragma once

#include <cstdio>
#include <ostream>
#include <string>
#include <vector>

// A streaming writer that places the commas: Begin/End open and close
// objects and arrays, Key names the next value inside an object.
class CJsonWriter {
public:
    explicit CJsonWriter(std::ostream& out) : m_out(out) {}

    void BeginObject() { Open('{'); }
    void EndObject() { Close('}'); }
    void BeginArray() { Open('['); }
    void EndArray() { Close(']'); }
    void Key(const char* key) {
        Separate();
        String(key);
        m_out << ':';
        m_afterKey = true;
    }
    void Value(const std::string& text) {
        Separate();
        String(text);
    }
    void Value(const char* text) { Value(std::string(text)); }
    void Value(long long number) {
        Separate();
        m_out << number;
    }
    void Value(int number) { Value(static_cast<long long>(number)); }
    void Value(unsigned number) { Value(static_cast<long long>(number)); }
    void Bool(bool value) {
        Separate();
        m_out << (value ? "true" : "false");
    }
    void Null() {
        Separate();
        m_out << "null";
    }
    // Key and value in one call.
    template <class T>
    void Field(const char* key, const T& value) {
        Key(key);
        Value(value);
    }
    void BoolField(const char* key, bool value) {
        Key(key);
        Bool(value);
    }

private:
    void Open(char bracket) {
        Separate();
        m_out << bracket;
        m_first.push_back(true);
    }
    void Close(char bracket) {
        m_out << bracket;
        m_first.pop_back();
    }
    void Separate() {
        if (m_afterKey) {
            m_afterKey = false;
            return;
        }
        if (!m_first.empty()) {
            if (!m_first.back()) m_out << ',';
            m_first.back() = false;
        }
    }
    // Texts are written as UTF-8, as JSON must be: a byte that is not part
    // of a valid UTF-8 sequence (a Latin-1 script's é) is written as the
    // character of that number (\u00e9), so no byte is lost.
    void String(const std::string& text) {
        m_out << '"';
        for (std::size_t i = 0; i < text.size(); ++i) {
            const unsigned char ch = static_cast<unsigned char>(text[i]);
            if (ch >= 0x80) {
                const std::size_t length = Utf8SequenceLength(text, i);
                if (length == 0) {
                    char escaped[8];
                    std::snprintf(escaped, sizeof escaped, "\\u%04x", ch);
                    m_out << escaped;
                } else {
                    m_out.write(text.data() + i, static_cast<std::streamsize>(length));
                    i += length - 1;
                }
                continue;
            }
            switch (ch) {
                case '"': m_out << "\\\""; break;
                case '\\': m_out << "\\\\"; break;
                case '\n': m_out << "\\n"; break;
                case '\r': m_out << "\\r"; break;
                case '\t': m_out << "\\t"; break;
                default:
                    if (ch < 0x20 || ch == 0x7F) {
                        char escaped[8];
                        std::snprintf(escaped, sizeof escaped, "\\u%04x", ch);
                        m_out << escaped;
                    } else {
                        m_out << static_cast<char>(ch);
                    }
            }
        }
        m_out << '"';
    }
    // The length of the well-formed UTF-8 sequence at `at`, or 0.
    static std::size_t Utf8SequenceLength(const std::string& text, std::size_t at) {
        const unsigned char lead = static_cast<unsigned char>(text[at]);
        std::size_t length = 0;
        unsigned code = 0;
        if (lead >= 0xC2 && lead <= 0xDF) length = 2, code = lead & 0x1F;
        else if (lead >= 0xE0 && lead <= 0xEF) length = 3, code = lead & 0x0F;
        else if (lead >= 0xF0 && lead <= 0xF4) length = 4, code = lead & 0x07;
        else return 0;
        if (at + length > text.size()) return 0;
        for (std::size_t k = 1; k < length; ++k) {
            const unsigned char next = static_cast<unsigned char>(text[at + k]);
            if ((next & 0xC0) != 0x80) return 0;
            code = code << 6 | (next & 0x3F);
        }
        // No overlong forms, surrogates or code points beyond U+10FFFF.
        if ((length == 3 && code < 0x800) || (length == 4 && (code < 0x10000 || code > 0x10FFFF)) ||
            (code >= 0xD800 && code <= 0xDFFF))
            return 0;
        return length;
    }

    std::ostream& m_out;
    std::vector<bool> m_first;
    bool m_afterKey = false;
};
