// The books of a catalogue: their values read from the tree, and as rows of a table.
#ifndef NORVASK_EXAMPLES_BOOK_TABLE_H
#define NORVASK_EXAMPLES_BOOK_TABLE_H

#include <norvask/norvask.h>

#include <algorithm>
#include <cstddef>
#include <sstream>
#include <string>
#include <vector>

#include "terminal.h"

// The first element that the path selects, or NULL.
inline norvask::CXMLNode* ElementIn(norvask::CXMLNode* node, const char* path) {
    return node->GetNodes(path)[0];
}

// The text node that the element at the path begins with, or NULL: typed values live there.
inline norvask::CXMLTextNode* TextIn(norvask::CXMLNode* node, const char* path) {
    norvask::CXMLNode* element = ElementIn(node, path);
    norvask::CXMLNode* child = element != nullptr ? element->GetFirstChild() : nullptr;
    if (child == nullptr || child->GetNodeType() != norvask::CXMLNode::NODE_TEXT) return nullptr;
    return static_cast<norvask::CXMLTextNode*>(child);
}

// The text of the element at the path; "" when there is none.
inline std::string ValueIn(norvask::CXMLNode* node, const char* path) {
    norvask::CXMLNode* element = ElementIn(node, path);
    return element != nullptr ? element->GetTextChildValue() : "";
}

inline double PriceOf(norvask::CXMLNode* book) {
    double price = 0;
    norvask::CXMLTextNode* text = TextIn(book, "bk:price");
    if (text != nullptr) text->GetDoubleText(price);
    return price;
}

inline long StockOf(norvask::CXMLNode* book) {
    long stock = 0;
    norvask::CXMLTextNode* text = TextIn(book, "st:stock");
    if (text != nullptr) text->GetLongText(stock);
    return stock;
}

// "14 Mar 2017", or as much of it as the catalogue tells: "Jun 2021", "2015".
inline std::string PublishedOf(norvask::CXMLNode* book) {
    static const char* const months[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                         "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    int year = -1, month = -1, day = -1;
    norvask::CXMLTextNode* text = TextIn(book, "bk:published");
    if (text == nullptr || !text->GetDateText(year, month, day)) return "";
    std::string date = year >= 0 ? std::to_string(year) : "";
    if (month >= 1 && month <= 12) {
        date = std::string(months[month - 1]) + " " + date;
        if (day >= 1) date = std::to_string(day) + " " + date;
    }
    return date;
}

// The bytes of the binary node that the element holds; none when it holds no such node.
inline std::vector<unsigned char> BytesOf(norvask::CXMLNode* element) {
    norvask::CXMLNode* child = element->GetFirstChild();
    if (child == nullptr || child->GetNodeType() != norvask::CXMLNode::NODE_BINARY) return {};
    const unsigned char* data = nullptr;
    std::size_t length = 0;
    static_cast<norvask::CXMLBinNode*>(child)->GetData(data, length);
    return {data, data + length};
}

// A picture of two rows in the binary PPM format, as half blocks in the terminal's 256 colours: the
// upper point is the foreground of a character, the lower one its background. Without colours, and
// for any other picture, the number of its bytes.
inline std::string PictureOf(norvask::CXMLNode* book) {
    norvask::CXMLNode* thumb = ElementIn(book, "bk:thumb");
    if (thumb == nullptr) return "";
    const std::vector<unsigned char> bytes = BytesOf(thumb);
    std::istringstream header(std::string(bytes.begin(), bytes.end()));
    std::string kind;
    std::size_t width = 0, height = 0, brightest = 0;
    header >> kind >> width >> height >> brightest;
    const std::size_t begin = header ? static_cast<std::size_t>(header.tellg()) + 1 : 0;
    if (!terminal::HasColours() || kind != "P6" || height != 2 || width < 1 || width > 8 ||
        brightest != 255 || bytes.size() != begin + 6 * width) {
        return bytes.empty() ? "" : std::to_string(bytes.size()) + " B";
    }
    const auto colour = [&](std::size_t point) {
        const auto level = [&](std::size_t i) { return (bytes[begin + 3 * point + i] + 25) / 51; };
        return std::to_string(16 + 36 * level(0) + 6 * level(1) + level(2));
    };
    std::string picture;
    for (std::size_t x = 0; x < width; ++x) {
        picture += terminal::Paint("38;5;" + colour(x) + ";48;5;" + colour(width + x), "▀");
    }
    return picture;
}

class CBookTable {
public:
    std::string Head() const {
        return Line({"sku", "title", "author", "published", "price", "stock"}) + "picture";
    }

    std::string Row(norvask::CXMLNode* book) const {
        return Line({book->GetAttributeValue("sku"), ValueIn(book, "bk:title"),
                     ValueIn(book, "bk:author"), PublishedOf(book),
                     terminal::Fixed(PriceOf(book), 2), std::to_string(StockOf(book))}) +
               PictureOf(book);
    }

private:
    // Title and author share what the other columns leave, three to two.
    static std::string Line(const std::vector<std::string>& cells) {
        const std::size_t shared = std::min<std::size_t>(terminal::Columns() - 53, 45);
        const std::size_t title = shared * 3 / 5;
        const std::size_t widths[] = {8, title, shared - title, 11, 7, 6};
        std::string line;
        for (std::size_t i = 0; i < cells.size(); ++i) {
            const std::string cell = terminal::OneLine(cells[i]);
            line += (i < 4 ? terminal::Left(cell, widths[i]) : terminal::Right(cell, widths[i]));
            line += "  ";
        }
        return line;
    }
};

#endif
