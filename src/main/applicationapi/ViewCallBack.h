#pragma once

/** The application's view: told by the main service to show, hide or update itself. Each
    operation receives the message's param1 and its code. Called on the message thread; bound
    by raw pointer and never owned. */
class ViewCallBack
{
public:
    virtual ~ViewCallBack() = default;

    /** Code 1725. */
    virtual void onViewShow(int param1, int code) = 0;
    /** Code 1726. */
    virtual void onViewHide(int param1, int code) = 0;
    /** Code 1727. */
    virtual void onViewNotify(int param1, int code) = 0;
};
