#include "Xml.h"

#include "Text.h"

#include <algorithm>
#include <cstddef>
#include <exception>
#include <stdexcept>
#include <utility>

namespace vorbel::products {
namespace {

/// Bounds what the tree takes to about 600 MB. The largest orbit files have 10^5 elements.
constexpr std::ptrdiff_t kMostMarks = 8'000'000;

std::string_view content(pugi::xml_node node) {
    return trimmed(node.child_value());
}

}  // namespace

Element Element::at(std::string_view path) const {
    Element element = *this;
    while (!path.empty()) {
        const std::size_t end = std::min(path.find('/'), path.size());
        const std::string name(path.substr(0, end));
        const pugi::xml_node child = element.m_node.child(name.c_str());
        if (!child) {
            throw std::runtime_error(element.place(name.c_str()) + " is missing");
        }
        element.m_node = child;
        path.remove_prefix(std::min(end + 1, path.size()));
    }
    return element;
}

std::vector<Element> Element::list(const char* list, const char* item) const {
    std::vector<Element> elements;
    for (const pugi::xml_node node : m_node.child(list).children(item)) {
        elements.emplace_back(node, *m_source);
    }
    return elements;
}

bool Element::has(const char* child) const {
    return !m_node.child(child).empty();
}

std::string Element::text(const char* child) const {
    return std::string(required(child));
}

std::string Element::textOr(const char* child, std::string_view otherwise) const {
    return has(child) ? text(child) : std::string(otherwise);
}

double Element::number(const char* child) const {
    const std::string_view text = required(child);
    const auto value = finiteNumber(text);
    if (!value) {
        refuse(child, text, "a finite number");
    }
    return *value;
}

double Element::positive(const char* child) const {
    const double value = number(child);
    if (!(value > 0.0)) {
        refuse(child, required(child), "positive");
    }
    return value;
}

double Element::numberOr(const char* child, double otherwise) const {
    return has(child) ? number(child) : otherwise;
}

int Element::natural(const char* child) const {
    const std::string_view text = required(child);
    const auto value = integer(text);
    if (!value || *value < 0) {
        refuse(child, text, "a natural number");
    }
    return *value;
}

int Element::count(const char* child) const {
    const int value = natural(child);
    if (value == 0) {
        refuse(child, "0", "positive");
    }
    return value;
}

scene::Instant Element::time(const char* child) const {
    const std::string_view text = required(child);
    try {
        return scene::Instant::parse(text);
    } catch (const std::invalid_argument&) {
        refuse(child, text, "a time such as 2022-04-14T10:22:07.036419");
    }
}

std::vector<double> Element::numbers(const char* child) const {
    std::string_view text = required(child);
    std::vector<double> values;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find_first_of(" \t\r\n"), text.size());
        const auto value = finiteNumber(text.substr(0, end));
        if (!value) {
            refuse(child, text.substr(0, end), "a finite number");
        }
        values.push_back(*value);
        text = trimmed(text.substr(end));
    }
    if (values.empty()) {
        refuse(child, text, "a list of numbers");
    }
    return values;
}

std::string Element::place(const char* child) const {
    std::string path = child == nullptr ? "" : child;
    for (pugi::xml_node node = m_node; node.parent().type() == pugi::node_element; node = node.parent()) {
        std::size_t index = 1;
        for (auto other = node.previous_sibling(node.name()); !other.empty();
             other = other.previous_sibling(node.name())) {
            ++index;
        }
        std::string step = node.name();
        if (index > 1 || !node.next_sibling(node.name()).empty()) {
            step.append("[").append(std::to_string(index)).append("]");  // GCC 12 warns of "[" + std::string
        }
        if (!path.empty()) {
            step += "/";
        }
        path.insert(0, step);
    }
    return *m_source + ": " + path;
}

std::string_view Element::required(const char* child) const {
    const pugi::xml_node node = m_node.child(child);
    if (!node) {
        throw std::runtime_error(place(child) + " is missing");
    }
    return content(node);
}

void Element::refuse(const char* child, std::string_view text, const char* right) const {
    throw std::runtime_error(place(child) + " is " + shown(text) + ", not " + right);
}

Document::Document(std::string_view text, std::string source) : m_source(std::move(source)), m_text(text) {
    refuseLarge(text.size(), m_source);
    if (trimmed(text).empty()) {
        throw std::runtime_error(m_source + " is empty");
    }
    if (std::count_if(text.begin(), text.end(), [](char c) { return c == '<' || c == '='; }) > kMostMarks) {
        throw std::runtime_error(m_source + " has millions of elements: no annotation or orbit file");
    }
    const pugi::xml_parse_result result = m_document.load_buffer_inplace(
        m_text.data(), m_text.size(), pugi::parse_minimal | pugi::parse_escapes, pugi::encoding_utf8);
    if (!result) {
        throw std::runtime_error(m_source + " is cut or no XML: " + result.description() + " at byte " +
                                 std::to_string(result.offset));
    }
}

Element Document::root(std::string_view name, std::string_view what) const {
    const pugi::xml_node node = m_document.document_element();
    if (node.name() != name) {
        throw std::runtime_error(m_source + " is no " + std::string(what) + ": its outermost element is " +
                                 shown(node.name()) + ", not " + shown(name));
    }
    return {node, m_source};
}

}  // namespace vorbel::products
