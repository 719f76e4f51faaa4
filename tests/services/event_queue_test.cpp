#include <gtest/gtest.h>

#include <tuple>
#include <vector>

#include "services/events.h"
#include "services/menus.h"

namespace {

using services::Event;
using services::EventKind;
using services::EventQueue;
using services::eventQueueLimit;
using services::postEvent;
using services::takeEvent;

Event frameEvent(EventKind kind, int window = 0, int data = 0) {
    return {.kind = kind, .window = window, .data = data};
}

Event menuEvent(int item) {
    return {.kind = EventKind::menu, .item = item};
}

Event tick(int window, int timer) {
    return {.kind = EventKind::timer, .window = window, .item = timer};
}

EventQueue fullQueue() {
    EventQueue queue;
    for (std::size_t i = 0; i < eventQueueLimit; ++i)
        postEvent(queue, menuEvent(static_cast<int>(i) + 1));
    return queue;
}

std::vector<EventKind> kindsOf(const EventQueue& queue) {
    std::vector<EventKind> kinds;
    for (const Event& event : queue.events)
        kinds.push_back(event.kind);
    return kinds;
}

TEST(EventQueue, GivesEventsInTheirOrderAndNoneWhenEmpty) {
    EventQueue queue;
    postEvent(queue, {.kind = EventKind::click, .window = 1, .control = 2, .item = 3, .data = 4});
    postEvent(queue, menuEvent(5));
    const Event first = takeEvent(queue);
    EXPECT_EQ(EventKind::click, first.kind);
    EXPECT_EQ(1, first.window);
    EXPECT_EQ(2, first.control);
    EXPECT_EQ(3, first.item);
    EXPECT_EQ(4, first.data);
    EXPECT_EQ(5, takeEvent(queue).item);
    EXPECT_EQ(EventKind::none, takeEvent(queue).kind);
}

TEST(EventQueue, ABurstOfSizesIsOneEventWithTheLastData) {
    EventQueue queue;
    for (int i = 0; i < 1000; ++i)
        postEvent(queue, frameEvent(EventKind::resize, 0, i));
    ASSERT_EQ(1U, queue.events.size());
    EXPECT_EQ(999, queue.events.front().data);
}

TEST(EventQueue, AWaitingSizeChangeStaysOneWhenTheWindowMoves) {
    for (const auto& [first, second, merged] :
         {std::tuple(EventKind::resize, EventKind::move, EventKind::resize),
          std::tuple(EventKind::move, EventKind::resize, EventKind::resize),
          std::tuple(EventKind::zoom, EventKind::move, EventKind::zoom),
          std::tuple(EventKind::move, EventKind::zoom, EventKind::zoom),
          std::tuple(EventKind::zoom, EventKind::resize, EventKind::resize),
          std::tuple(EventKind::move, EventKind::move, EventKind::move)}) {
        EventQueue queue;
        postEvent(queue, frameEvent(first));
        postEvent(queue, frameEvent(second));
        EXPECT_EQ(std::vector{merged}, kindsOf(queue));
    }
}

TEST(EventQueue, SizesOfOtherWindowsDoNotMerge) {
    EventQueue queue;
    postEvent(queue, frameEvent(EventKind::resize, 0, 1));
    postEvent(queue, frameEvent(EventKind::resize, 1, 2));
    postEvent(queue, frameEvent(EventKind::resize, 0, 3));
    ASSERT_EQ(2U, queue.events.size());
    EXPECT_EQ(3, queue.events[0].data);
    EXPECT_EQ(2, queue.events[1].data);
}

TEST(EventQueue, ASizeDoesNotOvertakeAnotherEventOfItsWindow) {
    EventQueue queue;
    postEvent(queue, frameEvent(EventKind::resize));
    postEvent(queue, menuEvent(3));
    postEvent(queue, frameEvent(EventKind::resize));
    EXPECT_EQ((std::vector{EventKind::resize, EventKind::menu, EventKind::resize}), kindsOf(queue));
}

TEST(EventQueue, ATimerTickWaitsOnlyOnce) {
    EventQueue queue;
    postEvent(queue, tick(0, 1));
    postEvent(queue, menuEvent(3));
    postEvent(queue, tick(0, 1));
    EXPECT_EQ((std::vector{EventKind::timer, EventKind::menu}), kindsOf(queue));
    postEvent(queue, tick(0, 2));
    postEvent(queue, tick(1, 1));
    EXPECT_EQ(4U, queue.events.size());
    takeEvent(queue);
    postEvent(queue, tick(0, 1));
    EXPECT_EQ(4U, queue.events.size());
}

TEST(EventQueue, WhatComesBeyondTheLimitIsDropped) {
    EventQueue queue = fullQueue();
    postEvent(queue, menuEvent(9999));
    ASSERT_EQ(eventQueueLimit, queue.events.size());
    EXPECT_EQ(static_cast<int>(eventQueueLimit), queue.events.back().item);
}

TEST(EventQueue, ClosingAndQuittingTakeThePlaceOfTheNewest) {
    EventQueue queue = fullQueue();
    postEvent(queue, frameEvent(EventKind::close, 1));
    ASSERT_EQ(eventQueueLimit, queue.events.size());
    EXPECT_EQ(EventKind::close, queue.events.back().kind);
    EXPECT_EQ(1, queue.events.front().item);

    postEvent(queue, menuEvent(services::quitItem));
    ASSERT_EQ(eventQueueLimit, queue.events.size());
    EXPECT_EQ(services::quitItem, queue.events.back().item);
    EXPECT_EQ(EventKind::close, queue.events[eventQueueLimit - 2].kind);
}

TEST(EventQueue, AQueueOfNothingButCloseRequestsStaysBounded) {
    EventQueue queue;
    for (int i = 0; i < 1000; ++i)
        postEvent(queue, frameEvent(EventKind::close, i));
    EXPECT_EQ(eventQueueLimit, queue.events.size());
    EXPECT_EQ(0, queue.events.front().window);
}

TEST(EventQueue, TakingFromAnEmptyOneChangesNothing) {
    EventQueue queue;
    EXPECT_EQ(EventKind::none, takeEvent(queue).kind);
    EXPECT_EQ(EventKind::none, takeEvent(queue).kind);
    EXPECT_TRUE(queue.events.empty());
    postEvent(queue, menuEvent(5));
    EXPECT_EQ(1U, queue.events.size());
    EXPECT_EQ(5, takeEvent(queue).item);
}

TEST(EventQueue, ATickIsNoMenuEventOfItsNumber) {
    EventQueue queue;
    postEvent(queue, menuEvent(1));
    postEvent(queue, tick(0, 1));
    EXPECT_EQ((std::vector{EventKind::menu, EventKind::timer}), kindsOf(queue));
}

TEST(EventQueue, OnlyTheMenuQuits) {
    EventQueue queue = fullQueue();
    postEvent(queue, {.kind = EventKind::control, .item = services::quitItem});
    ASSERT_EQ(eventQueueLimit, queue.events.size());
    EXPECT_EQ(EventKind::menu, queue.events.back().kind);
}

TEST(EventQueue, AFullOneStillMerges) {
    EventQueue queue;
    postEvent(queue, frameEvent(EventKind::resize, 0, 1));
    for (std::size_t i = 1; i < eventQueueLimit; ++i)
        postEvent(queue, {.kind = EventKind::click, .window = 1});
    postEvent(queue, frameEvent(EventKind::resize, 0, 2));
    ASSERT_EQ(eventQueueLimit, queue.events.size());
    EXPECT_EQ(2, queue.events.front().data);
}

}  // namespace
