#ifndef VORBEL_PRODUCTS_XML_H
#define VORBEL_PRODUCTS_XML_H

#include <vorbel/scene/Instant.h>

#include <pugixml.hpp>

#include <string>
#include <string_view>
#include <vector>

namespace vorbel::products {

/// An element of an XML file that knows where it stands, so that every message can say it.
///
/// All members that name a child take the first of that name; the child is required unless a member says otherwise.
/// \throws std::runtime_error  from all of them: a missing child, or text that is not what is asked for
class Element {
public:
    Element(pugi::xml_node node, const std::string& source) : m_node(node), m_source(&source) {}

    /// A child, or a child's child, through a path such as "imageAnnotation/imageInformation".
    Element at(std::string_view path) const;

    /// All children of a name in a list, which may be missing: ("orbitList", "orbit").
    std::vector<Element> list(const char* list, const char* item) const;

    bool has(const char* child) const;

    std::string text(const char* child) const;
    std::string textOr(const char* child, std::string_view otherwise) const;
    double number(const char* child) const;
    double positive(const char* child) const;
    double numberOr(const char* child, double otherwise) const;
    int count(const char* child) const;    ///< 1 or more
    int natural(const char* child) const;  ///< 0 or more
    scene::Instant time(const char* child) const;
    std::vector<double> numbers(const char* child) const;  ///< at least one

    /// "file: a/b[2]/c"
    std::string place(const char* child = nullptr) const;

private:
    std::string_view required(const char* child) const;
    [[noreturn]] void refuse(const char* child, std::string_view text, const char* right) const;

    pugi::xml_node m_node;
    const std::string* m_source;
};

/// A parsed file.
class Document {
public:
    /// \throws std::runtime_error  the text is empty, cut or no XML, or has more elements than any file of ours
    Document(std::string_view text, std::string source);

    /// The root element.
    /// \throws std::runtime_error  it has another name; the message says "is no WHAT"
    Element root(std::string_view name, std::string_view what) const;

private:
    std::string m_source;
    std::string m_text;  // which the document points into
    pugi::xml_document m_document;
};

}  // namespace vorbel::products

#endif
