#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <ostream>
#include <set>

#include "service/KnowledgeBase.h"
#include "service/SearchTokens.h"
#include "service/Text.h"
#include "tests/service/TemporaryFolder.h"

namespace zentri::service {
namespace {

const KnowledgeBase& builtIn() {
    static const KnowledgeBase knowledge(KnowledgeBase::builtInTopics());
    return knowledge;
}

std::string contentOf(const Topic& topic) {
    std::string text = topic.introduction;
    for (const auto* list : {&topic.steps, &topic.tips}) {
        for (const std::string& line : *list) {
            text += "\n" + line;
        }
    }
    return text;
}

/// The names between 【 and 】 in a text.
std::vector<std::string> linksIn(const std::string& text) {
    constexpr std::string_view kOpen = "【";
    constexpr std::string_view kClose = "】";
    std::vector<std::string> links;
    for (std::size_t at = text.find(kOpen); at != std::string::npos; at = text.find(kOpen, at)) {
        at += kOpen.size();
        const std::size_t end = text.find(kClose, at);
        EXPECT_NE(end, std::string::npos) << text;
        links.push_back(text.substr(at, end - at));
    }
    return links;
}

TEST(KnowledgeBase, HasAtLeast120DraftingTopics) {
    const auto& topics = builtIn().topics();
    const auto drafting =
        std::count_if(topics.begin(), topics.end(), [](const Topic& t) { return !t.isSmallTalk(); });
    EXPECT_GE(drafting, 120);
}

TEST(KnowledgeBase, EveryDraftingTopicIsComplete) {
    for (const Topic& topic : builtIn().topics()) {
        if (topic.isSmallTalk()) {
            continue;
        }
        SCOPED_TRACE(topic.title);
        EXPECT_GE(topic.steps.size(), 3U);
        EXPECT_GE(topic.tips.size(), 1U);
        EXPECT_FALSE(topic.commands.empty());
        EXPECT_GE(topic.keywords.size(), 4U);
        EXPECT_TRUE(std::any_of(topic.keywords.begin(), topic.keywords.end(), isEnglish));
        EXPECT_TRUE(std::any_of(topic.questions.begin(), topic.questions.end(), isEnglish));
        EXPECT_FALSE(std::all_of(topic.questions.begin(), topic.questions.end(), isEnglish));
        const std::size_t length = codePointCount(contentOf(topic));
        EXPECT_GE(length, 120U);
        EXPECT_LE(length, 420U);
    }
}

TEST(KnowledgeBase, LinksContainOnlyCommandNames) {
    for (const Topic& topic : builtIn().topics()) {
        SCOPED_TRACE(topic.title);
        const std::vector<std::string> links = linksIn(contentOf(topic) + topic.english);
        if (!topic.isSmallTalk()) {
            EXPECT_FALSE(links.empty());
        }
        for (const std::string& link : links) {
            EXPECT_FALSE(link.empty());
            EXPECT_EQ(link.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-"), std::string::npos)
                << link;
        }
    }
}

TEST(KnowledgeBase, TopicsDoNotRepeatEachOther) {
    std::set<std::string> introductions;
    std::set<std::string> steps;
    for (const Topic& topic : builtIn().topics()) {
        EXPECT_TRUE(introductions.insert(topic.introduction).second) << topic.title;
        if (!topic.isSmallTalk()) {
            EXPECT_TRUE(steps.insert(topic.steps.front() + topic.steps[1]).second) << topic.title;
        }
    }
}

TEST(KnowledgeBase, BasicCommandsAppearInSeveralTopics) {
    for (const std::string command : {"LINE", "CIRCLE", "RECTANG", "ERASE", "U", "ZOOM", "SETVAR"}) {
        const auto& topics = builtIn().topics();
        const auto count = std::count_if(topics.begin(), topics.end(), [&](const Topic& topic) {
            return contentOf(topic).find("【" + command + "】") != std::string::npos;
        });
        EXPECT_GE(count, 3) << command;
    }
}

TEST(KnowledgeBase, EveryTopicIsFoundByItsTitleAndByItsOwnQuestions) {
    for (const Topic& topic : builtIn().topics()) {
        std::vector<std::string> questions = topic.questions;
        if (!topic.isSmallTalk()) {
            questions.push_back("怎么" + topic.title);
        }
        for (const std::string& question : questions) {
            const std::vector<Hit> hits = builtIn().search(question, 3);
            ASSERT_FALSE(hits.empty()) << question;
            EXPECT_EQ(hits.front().topic->title, topic.title) << question;
        }
    }
}

struct Typical {
    const char* question;
    const char* title;
};

/// Typical questions, in wordings that the knowledge files do not contain.
constexpr Typical kTypical[] = {
    {"圆怎么画啊", "画圆"},
    {"我想画个半径50的圆", "画圆"},
    {"circle command", "画圆"},
    {"how can I draw circles with a given diameter?", "画圆"},
    {"画一条水平线", "画直线"},
    {"line怎么用", "画直线"},
    {"长方形怎么画，带圆角的那种", "画矩形"},
    {"RECTANG命令怎么输尺寸", "画矩形"},
    {"六边形怎么画", "画正多边形"},
    {"填充图案太密了", "图案填充"},
    {"剖面线怎么打", "图案填充"},
    {"怎么删掉选中的线", "删除对象"},
    {"erase all objects", "删除对象"},
    {"撤销快捷键是什么", "撤销上一步操作"},
    {"undo several steps", "撤销上一步操作"},
    {"线太长了怎么剪掉", "修剪对象"},
    {"how to trim", "修剪对象"},
    {"倒个R5的圆角", "倒圆角"},
    {"把图形转45度", "旋转对象"},
    {"怎么让图形左右翻转", "镜像对象"},
    {"等距复制一条线出来", "复制对象"},
    {"两条平行线距离240怎么画", "偏移对象"},
    {"把多段线炸开", "分解对象"},
    {"零散的线怎么连成一条多段线", "合并对象"},
    {"六个螺栓孔在圆周上均布", "环形阵列"},
    {"如何新建一个图层并改颜色", "新建图层"},
    {"图层锁定了怎么解锁", "关闭冻结锁定图层"},
    {"freeze a layer", "关闭冻结锁定图层"},
    {"只想显示墙体那一个图层", "单独显示某个图层"},
    {"虚线看不出来，像实线", "设置线型比例"},
    {"格式刷快捷键", "匹配特性"},
    {"屏幕上看不到线宽", "设置和显示线宽"},
    {"怎么把字变大", "修改文字高度"},
    {"直径符号怎么打出来", "输入特殊符号"},
    {"批量替换图里的文字", "查找和替换文字"},
    {"insert diameter symbol in text", "输入特殊符号"},
    {"标注样式里字体太小", "设置标注样式"},
    {"怎么标一个圆的半径", "标注半径和直径"},
    {"add a radius dimension", "标注半径和直径"},
    {"轴线尺寸连着标怎么标", "连续标注"},
    {"做一个门的图块", "创建图块"},
    {"how to explode a block", "分解对象"},
    {"文件好大怎么瘦身", "清理没用的块和图层"},
    {"purge drawing", "清理没用的块和图层"},
    {"黑白打印怎么设置", "使用打印样式控制颜色和线宽"},
    {"图纸导出成PDF", "打印成 PDF 文件"},
    {"模型空间和图纸空间的区别", "使用布局出图"},
    {"set the scale of a viewport to 1:100", "设置视口比例"},
    {"看不到全图了，怎么显示全部", "缩放视图"},
    {"zoom extents", "缩放视图"},
    {"圆显示成了多边形", "重生成图形"},
    {"命令行窗口没了", "显示命令行窗口"},
    {"背景换成白色", "修改背景颜色"},
    {"自动保存的时间间隔改成10分钟", "设置自动保存"},
    {"系统变量FILEDIA怎么改回来", "文件对话框不弹出"},
    {"图纸打不开，提示损坏", "修复损坏的图形"},
    {"dwg文件损坏 recover", "修复损坏的图形"},
    {"外部参照怎么附着", "附着外部参照"},
    {"查一下这个房间的面积", "查询面积和周长"},
    {"measure distance between two points", "测量距离"},
    {"把矩形拉成三维实体", "由轮廓拉伸成实体"},
    {"实体上打个孔", "实体的并集差集交集"},
    {"打开图纸字都是问号", "打开图纸文字显示问号"},
    {"画不了斜线只能画水平竖直", "使用正交模式"},
    {"光标跳来跳去", "打开和关闭栅格与捕捉"},
    {"对象捕捉的快捷键", "设置对象捕捉"},
    {"软件太卡了反应很慢", "图纸打开和操作很卡"},
    {"死机了图没保存", "软件崩溃后找回图纸"},
    {"标注字太小", "设置标注样式"},
    {"标注箭头太大了", "设置标注样式"},
    {"不想打印这个图层", "打印时有些内容打不出来"},
    {"多个CAD文件合并", "附着外部参照"},
    {"怎么把几张图合并到一起", "附着外部参照"},
    {"圆变成六边形了", "重生成图形"},
    {"怎么炸块", "分解对象"},
    {"块怎么改", "编辑图块"},
    {"快捷键怎么改", "自定义命令别名和快捷键"},
    {"change layer color", "修改对象颜色"},
    {"how do I select everything on the same layer?", "按条件快速选择"},
};

/// Prints the question as the parameter in test listings and failures.
void PrintTo(const Typical& typical, std::ostream* stream) {
    *stream << typical.question;
}

class TypicalQuestion : public ::testing::TestWithParam<Typical> {};

TEST_P(TypicalQuestion, FindsTheRightTopic) {
    const std::vector<Hit> hits = builtIn().search(GetParam().question, 3);
    ASSERT_FALSE(hits.empty());
    EXPECT_EQ(hits.front().topic->title, GetParam().title) << GetParam().question;
    EXPECT_TRUE(hits.front().fits()) << GetParam().question;
}

INSTANTIATE_TEST_SUITE_P(KnowledgeBase, TypicalQuestion, ::testing::ValuesIn(kTypical));

TEST(KnowledgeBase, NoTopicFitsAnUnrelatedQuestion) {
    for (const char* question :
         {"今天天气怎么样", "推荐一部电影", "股票明天会涨吗", "红烧肉做法", "世界杯谁赢了",
          "写一首关于春天的诗", "what is the capital of France", "recommend a good restaurant",
          "who won the match yesterday", "区块链是什么", "孩子发烧怎么办", "北京到上海的火车票"}) {
        for (const Hit& hit : builtIn().search(question, 3)) {
            EXPECT_FALSE(hit.fits()) << question << " -> " << hit.topic->title;
        }
    }
}

TEST(KnowledgeBase, SearchAcceptsAnyTextAndNeverParsesItAsQuerySyntax) {
    for (const char* question : {"", "   ", "\"", "\" OR \"", "NEAR(a b)", "title : 圆", "*", "圆* AND (",
                                 "' ; DROP TABLE", "{title} : x", "-圆", "^圆", "😀", "\xEF\xBF\xBD"}) {
        EXPECT_NO_THROW(builtIn().search(question, 5)) << question;
    }
    EXPECT_TRUE(builtIn().search("", 5).empty());
    EXPECT_TRUE(builtIn().search("？！，", 5).empty());
    EXPECT_NO_THROW(builtIn().search(std::string(100000, 'x'), 5));
    std::string longQuestion;
    for (int i = 0; i < 20000; ++i) {
        appendUtf8(longQuestion, static_cast<char32_t>(0x4E00 + i));
    }
    EXPECT_NO_THROW(builtIn().search(longQuestion, 5));
}

TEST(KnowledgeBase, SearchReturnsAtMostTheRequestedCountBestFirst) {
    const std::vector<Hit> hits = builtIn().search("图层", 4);
    ASSERT_EQ(hits.size(), 4U);
    for (std::size_t i = 1; i < hits.size(); ++i) {
        EXPECT_GE(hits[i - 1].score, hits[i].score);
    }
}

TEST(KnowledgeBase, RejectsDuplicateTitlesAndAnEmptyTopicList) {
    Topic topic;
    topic.title = "画圆";
    EXPECT_THROW(KnowledgeBase({topic, topic}), TopicError);
    EXPECT_THROW(KnowledgeBase(std::vector<Topic>{}), TopicError);
}

TEST(KnowledgeBase, ReadsTopicsFromADirectoryInFileNameOrder) {
    const TemporaryFolder folder;
    folder.write("b.topics", "area: 乙\n# 二\nkeys: 二\nen: two\n说明\n1. 做\n");
    folder.write("a.topics", "area: 甲\n# 一\nkeys: 一\nen: one\n说明\n1. 做\n");
    folder.write("notes.txt", "not a topic");
    const std::vector<Topic> topics = KnowledgeBase::topicsIn(folder.path());
    ASSERT_EQ(topics.size(), 2U);
    EXPECT_EQ(topics[0].title, "一");
    EXPECT_EQ(topics[1].area, "乙");
}

TEST(KnowledgeBase, RejectsADirectoryWithoutTopics) {
    const TemporaryFolder folder;
    EXPECT_THROW(KnowledgeBase::topicsIn(folder.path()), TopicError);
    EXPECT_THROW(KnowledgeBase::topicsIn(folder.path() + "/missing"), TopicError);
}

}  // namespace
}  // namespace zentri::service
