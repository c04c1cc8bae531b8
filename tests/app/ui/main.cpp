// The tests of the windows: one QApplication for the whole program, without a screen.
#include <gtest/gtest.h>

#include <QApplication>
#include <QLocale>

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_STYLE_OVERRIDE", "Fusion");
    // Panels of the desktop would run in other processes.
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
    testing::InitGoogleTest(&argc, argv);
    const QApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("Quillmark"));
    return RUN_ALL_TESTS();
}
