// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/Translation.h"

#include "Language.h"

#include <QDir>
#include <QFile>
#include <QPushButton>
#include <QRegularExpression>
#include <QXmlStreamReader>
#include <algorithm>
#include <gtest/gtest.h>
#include <set>
#include <vector>

namespace {

struct CMessage {
    QString m_sContext;
    QString m_sSource;
    QString m_sComment;
    QStringList m_vForms; ///< One, or a plural's.
    bool m_bPlural = false;
    bool m_bFinished = true;
};

/// The messages of a language, as its source has them.
std::vector<CMessage> MessagesOf(QString const& language) {
    QFile file(QString("%1/tactus_%2.ts").arg(TACTUS_TEXTS, language));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << file.fileName().toStdString();
    QXmlStreamReader reader(&file);
    std::vector<CMessage> messages;
    QString context;
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::StartElement) {
            continue;
        }
        QStringView const name = reader.name();
        if (name == u"name") {
            context = reader.readElementText();
        } else if (name == u"message") {
            messages.push_back({context, {}, {}, {}, reader.attributes().hasAttribute("numerus")});
        } else if (name == u"source") {
            messages.back().m_sSource = reader.readElementText();
        } else if (name == u"comment") {
            messages.back().m_sComment = reader.readElementText();
        } else if (name == u"translation") {
            messages.back().m_bFinished = !reader.attributes().hasAttribute("type");
            if (!messages.back().m_bPlural) {
                messages.back().m_vForms << reader.readElementText();
            }
        } else if (name == u"numerusform") {
            messages.back().m_vForms << reader.readElementText();
        }
    }
    EXPECT_FALSE(reader.hasError()) << reader.errorString().toStdString();
    return messages;
}

/// %1, %L2, %Ln: what the program puts into a text.
std::set<QString> PlacesIn(QString const& text) {
    static QRegularExpression const place(QStringLiteral("%L?[0-9n]"));
    std::set<QString> places;
    for (QRegularExpressionMatchIterator i = place.globalMatch(text); i.hasNext();) {
        places.insert(i.next().captured());
    }
    return places;
}

QString MnemonicIn(QString const& text) {
    qsizetype const place = text.indexOf(QLatin1Char('&'));
    return place < 0 ? QString() : text.mid(place + 1, 1);
}

} // namespace

/// Every language but English, which the sources are in.
struct TranslationTest : testing::TestWithParam<char const*> {
    QString language = GetParam();
    std::vector<CMessage> messages = MessagesOf(language);
};

TEST_P(TranslationTest, EveryMessageIsTranslated) {
    EXPECT_FALSE(messages.empty());
    for (CMessage const& message : messages) {
        EXPECT_TRUE(message.m_bFinished) << message.m_sSource.toStdString();
        EXPECT_FALSE(message.m_vForms.isEmpty() || message.m_vForms.contains(QString()))
            << message.m_sSource.toStdString();
    }
}

TEST_P(TranslationTest, EveryLanguageHasTheSameMessages) {
    auto const keys = [](std::vector<CMessage> const& of) {
        std::set<QStringList> all;
        for (CMessage const& message : of) {
            all.insert({message.m_sContext, message.m_sSource, message.m_sComment});
        }
        return all;
    };
    EXPECT_EQ(keys(messages), keys(MessagesOf("de")));
}

// A plural may leave out its number where the word says it, as Arabic does for one and two.
TEST_P(TranslationTest, WhatIsPutIntoATextIsPutIntoItsTranslation) {
    for (CMessage const& message : messages) {
        std::set<QString> const wanted = PlacesIn(message.m_sSource);
        for (QString const& form : message.m_vForms) {
            std::set<QString> places = PlacesIn(form);
            if (message.m_bPlural && form != message.m_vForms.back()) {
                places.insert(QStringLiteral("%Ln"));
            }
            EXPECT_EQ(places, wanted) << form.toStdString();
        }
    }
}

TEST_P(TranslationTest, QuestionsKeepTheirDots) {
    for (CMessage const& message : messages) {
        for (QString const& form : message.m_vForms) {
            EXPECT_EQ(form.endsWith(u'…'), message.m_sSource.endsWith(u'…')) << form.toStdString();
        }
    }
}

// A language has them wherever English does, or nowhere: a mark below a letter tears Arabic apart.
TEST_P(TranslationTest, MnemonicsAreLettersOfTheirOwn) {
    std::set<QStringList> taken;
    std::size_t wanted = 0;
    for (CMessage const& message : messages) {
        QString const letter = MnemonicIn(message.m_vForms.value(0));
        wanted += MnemonicIn(message.m_sSource).isEmpty() ? 0U : 1U;
        if (!letter.isEmpty()) {
            EXPECT_FALSE(MnemonicIn(message.m_sSource).isEmpty()) << letter.toStdString();
            EXPECT_TRUE(letter.front().isLetter()) << letter.toStdString();
            EXPECT_TRUE(taken.insert({message.m_sContext, letter.toLower()}).second)
                << message.m_vForms.front().toStdString();
        }
    }
    EXPECT_EQ(taken.size(), language == "ar" ? 0U : wanted);
}

INSTANTIATE_TEST_SUITE_P(Languages, TranslationTest, testing::Values("ar", "de"),
                         [](auto const& of) { return std::string(of.param); });

// The sources are in English, which needs a file for its plurals only.
TEST(TranslationsTest, EveryPluralHasItsFormsInEveryLanguage) {
    std::set<QStringList> wanted;
    for (CMessage const& message : MessagesOf("de")) {
        if (message.m_bPlural) {
            wanted.insert({message.m_sContext, message.m_sSource});
        }
    }
    for (auto const& [language, forms] :
         {std::pair("ar", 6), std::pair("de", 2), std::pair("en", 2)}) {
        std::set<QStringList> plurals;
        for (CMessage const& message : MessagesOf(language)) {
            if (message.m_bPlural) {
                EXPECT_EQ(message.m_vForms.size(), forms) << message.m_sSource.toStdString();
                EXPECT_FALSE(message.m_vForms.contains(QString()));
                plurals.insert({message.m_sContext, message.m_sSource});
            }
        }
        EXPECT_EQ(plurals, wanted) << language;
    }
}

TEST(TranslationsTest, ArabicCountsInSixForms) {
    CLanguage const arabic(QLocale(QLocale::Arabic, QLocale::Egypt));
    auto const files = [](int count) {
        return QCoreApplication::translate("StatusTexts", "%Ln file(s)", nullptr, count)
            .toStdString();
    };
    EXPECT_EQ(files(0), "لا ملفات");
    EXPECT_EQ(files(1), "ملف واحد");
    EXPECT_EQ(files(2), "ملفان");
    EXPECT_EQ(files(3), "٣ ملفات");
    EXPECT_EQ(files(10), "١٠ ملفات");
    EXPECT_EQ(files(11), "١١ ملفًا");
    EXPECT_EQ(files(99), "٩٩ ملفًا");
    EXPECT_EQ(files(100), "١٠٠ ملف");
    EXPECT_EQ(files(103), "١٠٣ ملفات");
}

TEST(TranslationsTest, WindowsAreMirroredWhereTheTextsRunFromRightToLeft) {
    {
        CLanguage const arabic(QLocale(QLocale::Arabic, QLocale::Morocco));
        EXPECT_TRUE(QGuiApplication::isRightToLeft());
        EXPECT_EQ(QPushButton().layoutDirection(), Qt::RightToLeft);
    }
    CLanguage const german(QLocale(QLocale::German, QLocale::Germany));
    EXPECT_FALSE(QGuiApplication::isRightToLeft());
}

// In a language that we have no texts of, the window is in English.
TEST(TranslationsTest, WindowsInEnglishAreNotMirrored) {
    CLanguage const hebrew(QLocale(QLocale::Hebrew, QLocale::Israel));
    EXPECT_FALSE(QGuiApplication::isRightToLeft());
}

TEST(GermanTextsTest, GermanNamesTheColumnToSortByAsItStands) {
    CLanguage const german{QLocale("de_DE")};
    // "Nach Andere Lesart sortieren" would need another ending.
    EXPECT_EQ(QCoreApplication::translate("BpmWindow", "Sort by %1").arg("Andere Lesart"),
              "Sortieren: Andere Lesart");
}
