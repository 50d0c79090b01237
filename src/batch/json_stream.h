#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "core/text_pieces.h"
#include "report/json_text.h"

namespace anomalis::batch {

/// A compact JSON document on its way out while it is still made: the same bytes as `json_text` of the whole,
/// with the memory of one value at a time. As in json_text.h the type of a JSON value is a parameter.
template <class Json>
class JsonStreamOf {
  public:
    explicit JsonStreamOf(const TextSink& put) : put_(put) {}

    void begin_object() { open('{'); }
    void end_object() { close('}'); }
    void begin_array() { open('['); }
    void end_array() { close(']'); }

    /// Of what comes next in an object.
    void name(std::string_view name) {
        start_value();
        text_ += plain(Json(std::string(name)));
        text_ += ':';
        follows_ = false;
    }

    void value(const Json& json) {
        start_value();
        text_ += plain(json);
        follows_ = true;
        give_if_large();
    }

    void member(std::string_view the_name, const Json& json) { name(the_name), value(json); }

    /// All members of an object, among those of the object that is open.
    void members(const Json& object) {
        if (object.empty()) return;
        start_value();
        append_inside(plain(object), text_);
        follows_ = true;
        give_if_large();
    }

    /// An array of so many elements, made on all cores: element(i) with i from 1, any value. `bytes` is about
    /// the length of one.
    template <class Element>
    void array(int count, double bytes, Element&& element) {
        open('[');
        give();
        const auto form = [&element](int first, int last, std::string& text) {
            Json some = Json::array();
            some.template get_ref<typename Json::array_t&>().reserve(
                static_cast<std::size_t>(last - first + 1));
            for (int i = first; i <= last; ++i) some.push_back(element(i));
            if (first > 1) text += ',';
            append_inside(plain(some), text);
        };
        put_rows(count, bytes, form, put_);
        close(']');
    }

    /// Elements of the open array, several at a time: write(first, last, stream), numbered from 1, writes
    /// some of them to a stream of their own, on any thread. `bytes` is about the length of one.
    template <class Write>
    void elements(int count, double bytes, Write&& write) {
        give();
        const auto form = [&write](int first, int last, std::string& text) {
            const TextSink gather = [&text](std::string_view piece) { text += piece; };
            JsonStreamOf some(gather);
            some.follows_ = first > 1;
            write(first, last, some);
            some.give();
        };
        put_rows(count, bytes, form, put_);
        follows_ = count > 0;
    }

    /// The line end behind the document.
    void end() {
        text_ += '\n';
        give();
    }

  private:
    static std::string plain(const Json& json) {
        constexpr int compact = -1;  // for programs, and one number a line would double it
        return report::indented_json(json, compact);
    }
    /// What stands between the brackets.
    static void append_inside(std::string_view bracketed, std::string& text) {
        text += bracketed.substr(1, bracketed.size() - 2);
    }

    void open(char bracket) {
        start_value();
        text_ += bracket;
        follows_ = false;
    }
    void close(char bracket) {
        text_ += bracket;
        follows_ = true;
    }
    void start_value() {
        if (follows_) text_ += ',';
    }
    void give_if_large() {
        constexpr std::size_t large = 1 << 16;
        if (text_.size() >= large) give();
    }
    void give() {
        put_(text_);
        text_.clear();
    }

    const TextSink& put_;
    std::string text_;
    bool follows_ = false;  ///< something stands before in the present object or array
};

}  // namespace anomalis::batch
