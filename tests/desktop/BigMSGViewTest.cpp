#include "desktop/BigMSGView.h"

#include <gtest/gtest.h>

#include <QGuiApplication>
#include <QLabel>
#include <QScreen>
#include <QWindow>

#include "desktop/QtLoop.h"

namespace tallowin::desktop {
namespace {

TEST(BigMSGViewTest, LargeInTheMiddleAndInNobodysWay) {
  QtLoop loop;
  portsentry::BigMSG form;
  BigMSGView window(form, loop);
  EXPECT_FALSE(window.isVisible());
  EXPECT_EQ(window.windowHandle(), nullptr) << "costs nothing before its first use";

  form.SetTopMost(true);
  form.SetVisible(true);
  EXPECT_TRUE(window.isVisible());
  EXPECT_TRUE(window.windowHandle()->flags() & Qt::WindowStaysOnTopHint);
  EXPECT_TRUE(window.windowFlags() & Qt::WindowDoesNotAcceptFocus);
  EXPECT_TRUE(window.testAttribute(Qt::WA_ShowWithoutActivating));

  const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
  EXPECT_EQ(window.geometry().center(), screen.center());
  const auto& warning = *window.findChild<QLabel*>("Label1");
  EXPECT_EQ(warning.text(), "WARNING\nConnection Attempted");
  EXPECT_EQ(warning.textFormat(), Qt::PlainText);
  const int textWidth = warning.fontMetrics().size(0, warning.text()).width();
  EXPECT_GT(textWidth, screen.width() / 2);
  EXPECT_LE(textWidth, window.width());
  const auto* title = window.findChild<QLabel*>("Label2");
  const int textHeight = warning.fontMetrics().size(0, warning.text()).height();
  EXPECT_LE(title->fontMetrics().height(), (window.height() - textHeight) / 2) << "they overlap";

  EXPECT_EQ(window.centralWidget()->childAt(title->geometry().center()), title)
      << "covered by the warning";

  window.close();
  EXPECT_TRUE(window.isVisible());
  form.Hide();
  EXPECT_FALSE(window.isVisible());
}

}  // namespace
}  // namespace tallowin::desktop
