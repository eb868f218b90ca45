#pragma once

#include "Message/AppMessage.h"
#include "main/applicationapi/GeneralService.h"

#include <cstddef>
#include <utility>

/** What every application API does with its bound callbacks and its own message codes, in
    one place.

    An API describes the codes that only it receives in a table of OwnCode entries, one per
    code: the code, the delivery that turns the message into a call on the bound callback,
    and whether the message then stops or also goes on to the common dispatch. route() looks
    a message up there; a code that is not in the table goes to the API's GeneralService.
    A delivery runs only when a callback is bound: an own code with none is dropped.

    Deliveries that read the attached object use ApiMessageHelper and drop the message when
    the object is missing or of another class, so no callback ever sees a null or
    reinterpreted object. Message thread only.
*/
class ApiDispatch
{
public:
    /** Where a message of an own code goes after its delivery. */
    enum class Then
    {
        stop,     ///< nowhere else
        goCommon, ///< on to the common dispatch as well
    };

    template <class CallBack>
    struct OwnCode
    {
        int code;
        /** Null: the message is swallowed without any call. */
        void (*deliver)(CallBack& callBack, const AppMessage::Ptr& message);
        Then then = Then::stop;
    };

    /** Delivers a message whose code is in the table (when callBack is bound) and returns
        true if it stops there; false for any other code and for a null message. */
    template <class CallBack, std::size_t N>
    static bool deliverOwnCode(const OwnCode<CallBack> (&table)[N], CallBack* callBack, const AppMessage::Ptr& message)
    {
        JUCE_ASSERT_MESSAGE_THREAD;
        if (message == nullptr)
            return false;
        for (auto& entry : table)
        {
            if (entry.code != message->intParameter1)
                continue;
            if (callBack != nullptr && entry.deliver != nullptr)
                entry.deliver(*callBack, message);
            return entry.then == Then::stop;
        }
        return false;
    }

    /** The whole of an API's remoteCallBack for one callback: its own codes, then the rest
        to the common dispatch. */
    template <class CallBack, std::size_t N>
    static void route(const OwnCode<CallBack> (&table)[N], CallBack* callBack, GeneralService& service,
                      const AppMessage::Ptr& message)
    {
        if (!deliverOwnCode(table, callBack, message))
            service.processMessage(message);
    }

    /** Calls op on callBack when one is bound; nothing otherwise. */
    template <class CallBack, class... Params, class... Args>
    static void call(CallBack* callBack, void (CallBack::*op)(Params...), Args&&... args)
    {
        if (callBack != nullptr)
            (callBack->*op)(std::forward<Args>(args)...);
    }

    /** Delivery: op(the message, its code). */
    template <class CallBack, void (CallBack::*op)(const AppMessage::Ptr&, int)>
    static void messageAndCode(CallBack& callBack, const AppMessage::Ptr& message)
    {
        (callBack.*op)(message, message->intParameter1);
    }

    /** Delivery: op(arg1, arg2). */
    template <class CallBack, void (CallBack::*op)(int, int)>
    static void arguments(CallBack& callBack, const AppMessage::Ptr& message)
    {
        (callBack.*op)(message->intParameter2, message->intParameter3);
    }

    /** Delivery: op(arg1, its code). */
    template <class CallBack, void (CallBack::*op)(int, int)>
    static void arg1AndCode(CallBack& callBack, const AppMessage::Ptr& message)
    {
        (callBack.*op)(message->intParameter2, message->intParameter1);
    }

private:
    ApiDispatch() = delete;
};
