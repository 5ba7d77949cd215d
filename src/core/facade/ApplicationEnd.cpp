#include "core/facade/ApplicationEnd.h"

#include <utility>

#include <QCoreApplication>

ApplicationEnd *ApplicationEnd::current = nullptr;

ApplicationEnd::ApplicationEnd(std::function<void()> function) : function(std::move(function)) {
    current = this;
}

ApplicationEnd::~ApplicationEnd() {
    qRemovePostRoutine(arrive); // its code may go next
    current = nullptr;
}

void ApplicationEnd::await() {
    if (!awaited) {
        qAddPostRoutine(arrive); // may find no memory
        awaited = true;
    }
}

void ApplicationEnd::arrive() {
    current->awaited = false;
    current->function();
}
