// Presents one row of the agenda to screen readers: an item of a list with a name, a frame and,
// where a pull has an effect, one action.
#pragma once

#include <cstddef>
#include <exception>

#include <gtk/gtk.h>

namespace quorvel::shells {
class RowList;
} // namespace quorvel::shells

namespace quorvel::gtk {

// The list that a row's object belongs to.
class RowOwner {
public:
    virtual ~RowOwner() = default;
    virtual AtkObject* listObject() = 0;
    virtual GtkWidget* widget() = 0;     // null once it is destroyed
    virtual shells::RowList* rows() = 0; // null where the list has none
    virtual void onRowObjectFinalized(std::size_t row) = 0;
    virtual void onFailure(std::exception_ptr failure) noexcept = 0;
};

// Returns a new reference. The row exists. The owner outlives the object or detaches it.
AtkObject* makeRowObject(RowOwner& owner, std::size_t row);

// For a row that no longer exists: reports the object as defunct to screen readers that still own
// it; its answers are empty from here on.
void detachRowObject(AtkObject* rowObject);

// Whether the row has the keyboard focus, not only the focus inside the list.
bool hasFocus(RowOwner& owner, std::size_t row);

// Runs the work; an exception goes to the owner, as none may pass through the library, which is
// written in C, and the result is `otherwise`.
template <class Answer, class Work>
Answer answerOr(Answer otherwise, RowOwner& owner, Work work) noexcept {
    try {
        return work();
    } catch (...) {
        owner.onFailure(std::current_exception());
        return otherwise;
    }
}

} // namespace quorvel::gtk
