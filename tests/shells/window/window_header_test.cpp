// The bar is empty in the first frame, and as high as afterwards, so that the rows stay in place.
#include "shells/window/window_header.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>

namespace quorvel::window {
namespace {

using testing::IsEmpty;
using testing::UnorderedElementsAre;

class WindowHeaderTest : public testing::Test {
protected:
    WindowHeaderTest() {
        gtk_window_set_titlebar(GTK_WINDOW(m_window), header.widget());
        header.setDate("Tuesday, March 10");
        gtk_widget_show_all(m_window);
    }
    ~WindowHeaderTest() override { gtk_widget_destroy(m_window); }

    // The types of what the user sees in the bar, apart from boxes.
    std::vector<std::string> shown() const {
        std::vector<std::string> types;
        addShown(header.widget(), types);
        return types;
    }

    WindowHeader header;

private:
    static void addShown(GtkWidget* widget, std::vector<std::string>& types) {
        if (gtk_widget_is_visible(widget) == FALSE) {
            return;
        }
        if (!GTK_IS_CONTAINER(widget)) {
            types.emplace_back(G_OBJECT_TYPE_NAME(widget));
            return;
        }
        const GtkCallback add = [](GtkWidget* child, gpointer into) {
            addShown(child, *static_cast<std::vector<std::string>*>(into));
        };
        gtk_container_forall(GTK_CONTAINER(widget), add, &types);
    }

    GtkWidget* m_window = gtk_window_new(GTK_WINDOW_TOPLEVEL);
};

TEST_F(WindowHeaderTest, IsEmptyAtFirst) {
    EXPECT_THAT(shown(), IsEmpty());
}

TEST_F(WindowHeaderTest, ShowsPictureDateMenuAndTheButtonToClose) {
    header.showContents();
    EXPECT_THAT(shown(), UnorderedElementsAre("GtkImage", "GtkLabel", "GtkImage", "GtkSeparator",
                                              "GtkImage"));
}

TEST_F(WindowHeaderTest, IsAsHighEmptyAsWithItsContents) {
    const int height = header.height();
    header.showContents();
    EXPECT_EQ(header.height(), height);
    EXPECT_EQ(height, 36);
}

} // namespace
} // namespace quorvel::window
