// One row of the agenda as a screen reader has it: an item of a list, with a name, a place and,
// where a pull would do something, one action.
#pragma once

#include <cstddef>
#include <exception>

#include <gtk/gtk.h>

namespace quorvel::window {

class RowList;

// What a row's object knows of the list that it is in.
class RowOwner {
public:
    virtual ~RowOwner() = default;
    virtual AtkObject* listObject() = 0;
    virtual GtkWidget* widget() = 0; // null: it is gone
    virtual RowList* rows() = 0;     // null: they are gone
    virtual void rowObjectGoes(std::size_t row) = 0;
    virtual void fail(std::exception_ptr failure) noexcept = 0;
};

// A new reference. The owner outlives the object, or detaches it. The row is there.
AtkObject* makeRowObject(RowOwner& owner, std::size_t row);

// For a row that is no more: whoever still holds the object is told that it is defunct, and gets
// empty answers from here on.
void detachRowObject(AtkObject* rowObject);

// Whether the row has the focus of the whole desktop, and not only that of the list.
bool hasFocus(RowOwner& owner, std::size_t row);

// No exception goes through the library, which is in C: the owner is told, and the answer is that.
template <class Answer, class Work>
Answer answerOr(Answer otherwise, RowOwner& owner, Work work) noexcept {
    try {
        return work();
    } catch (...) {
        owner.fail(std::current_exception());
        return otherwise;
    }
}

} // namespace quorvel::window
