// What C++ cannot express of Apple's calling convention for arm64 ("Writing ARM64 code for Apple
// platforms"): a function that forwards any arguments, one that preserves nearly all registers, and
// variadic functions, whose variable arguments are all on the stack.

    .text

// Both functions below save the argument registers across a call, in a frame of that many bytes: x0
// to x9 and q0 to q7. `stp` saves them, `ldp` restores them.
    .macro arguments transfer
    \transfer x0, x1, [sp, #16]
    \transfer x2, x3, [sp, #32]
    \transfer x4, x5, [sp, #48]
    \transfer x6, x7, [sp, #64]
    \transfer x8, x9, [sp, #80]
    \transfer q0, q1, [sp, #96]
    \transfer q2, q3, [sp, #128]
    \transfer q4, q5, [sp, #160]
    \transfer q6, q7, [sp, #192]
    .endm

    .macro enter bytes
    sub sp, sp, #\bytes
    .cfi_def_cfa_offset \bytes
    stp x29, x30, [sp]
    .cfi_offset x29, -\bytes
    .cfi_offset x30, 8 - \bytes
    mov x29, sp
    arguments stp
    .endm

    .macro leave bytes
    arguments ldp
    ldp x29, x30, [sp]
    add sp, sp, #\bytes
    .cfi_def_cfa_offset 0
    .cfi_restore x29
    .cfi_restore x30
    .endm

// id objc_msgSend(id receiver, SEL selector, ...)
// A message to nil returns zero in every register that can hold a result.
    .globl mac_objc_msgSend
    .type mac_objc_msgSend, %function
mac_objc_msgSend:
    .cfi_startproc
    cbz x0, 1f
    enter 224
    bl mac_message_target
    mov x16, x0
    leave 224
    br x16
1:  mov x1, #0
    movi d0, #0
    movi d1, #0
    movi d2, #0
    movi d3, #0
    ret
    .cfi_endproc
    .size mac_objc_msgSend, . - mac_objc_msgSend

// The other caller-saved registers, without x16, x17 and x18: x10 to x15, q16 to q31.
    .macro temporaries transfer
    \transfer x10, x11, [sp, #224]
    \transfer x12, x13, [sp, #240]
    \transfer x14, x15, [sp, #256]
    \transfer q16, q17, [sp, #272]
    \transfer q18, q19, [sp, #304]
    \transfer q20, q21, [sp, #336]
    \transfer q22, q23, [sp, #368]
    \transfer q24, q25, [sp, #400]
    \transfer q26, q27, [sp, #432]
    \transfer q28, q29, [sp, #464]
    \transfer q30, q31, [sp, #496]
    .endm

// Returns the address of a thread-local variable; x0 is its descriptor. The compiler relies on all
// registers but x0, x16 and x17 being preserved.
    .globl mac_tlv_get_addr
    .type mac_tlv_get_addr, %function
mac_tlv_get_addr:
    .cfi_startproc
    enter 528
    temporaries stp
    bl mac_tlv_address
    mov x16, x0
    temporaries ldp
    leave 528
    mov x0, x16
    ret
    .cfi_endproc
    .size mac_tlv_get_addr, . - mac_tlv_get_addr

// A variadic function: passes the address of its variable arguments as one more argument.
    .macro variadic name, register
    .globl mac_\name
    .type mac_\name, %function
mac_\name:
    .cfi_startproc
    mov \register, sp
    b mac_\name\()_with
    .cfi_endproc
    .size mac_\name, . - mac_\name
    .endm

    variadic printf, x1
    variadic fprintf, x2
    variadic snprintf, x3
    variadic sscanf, x2
    variadic snprintf_l, x4
    variadic asprintf_l, x3
    variadic sscanf_l, x3
    variadic open, x2
    variadic openat, x3
    variadic fcntl, x2

    .section .note.GNU-stack, "", %progbits
