// What Apple's calling convention for arm64 asks and C++ cannot say ("Writing ARM64 code for Apple
// platforms"): a function that is entered with any arguments and hands all of them on, and variadic
// functions, whose variable arguments all lie on the stack.

    .text

// id objc_msgSend(id receiver, SEL selector, ...)
// A message to nil gives zero in all registers that a result may be in.
    .globl mac_objc_msgSend
    .type mac_objc_msgSend, %function
mac_objc_msgSend:
    .cfi_startproc
    cbz x0, 1f
    stp x29, x30, [sp, #-224]!
    .cfi_def_cfa_offset 224
    .cfi_offset x29, -224
    .cfi_offset x30, -216
    mov x29, sp
    stp x0, x1, [sp, #16]
    stp x2, x3, [sp, #32]
    stp x4, x5, [sp, #48]
    stp x6, x7, [sp, #64]
    str x8, [sp, #80]
    stp q0, q1, [sp, #96]
    stp q2, q3, [sp, #128]
    stp q4, q5, [sp, #160]
    stp q6, q7, [sp, #192]
    bl mac_message_target
    mov x16, x0
    ldp q6, q7, [sp, #192]
    ldp q4, q5, [sp, #160]
    ldp q2, q3, [sp, #128]
    ldp q0, q1, [sp, #96]
    ldr x8, [sp, #80]
    ldp x6, x7, [sp, #64]
    ldp x4, x5, [sp, #48]
    ldp x2, x3, [sp, #32]
    ldp x0, x1, [sp, #16]
    ldp x29, x30, [sp], #224
    .cfi_def_cfa_offset 0
    .cfi_restore x29
    .cfi_restore x30
    br x16
1:  mov x1, #0
    movi d0, #0
    movi d1, #0
    movi d2, #0
    movi d3, #0
    ret
    .cfi_endproc
    .size mac_objc_msgSend, . - mac_objc_msgSend

// The address of a thread-local variable; x0 is its descriptor. The compiler counts on all other
// registers but x16 and x17 to stay as they are.
    .globl mac_tlv_get_addr
    .type mac_tlv_get_addr, %function
mac_tlv_get_addr:
    .cfi_startproc
    sub sp, sp, #528
    .cfi_def_cfa_offset 528
    stp x29, x30, [sp]
    .cfi_offset x29, -528
    .cfi_offset x30, -520
    mov x29, sp
    stp x1, x2, [sp, #16]
    stp x3, x4, [sp, #32]
    stp x5, x6, [sp, #48]
    stp x7, x8, [sp, #64]
    stp x9, x10, [sp, #80]
    stp x11, x12, [sp, #96]
    stp x13, x14, [sp, #112]
    str x15, [sp, #128]
    stp q0, q1, [sp, #144]
    stp q2, q3, [sp, #176]
    stp q4, q5, [sp, #208]
    stp q6, q7, [sp, #240]
    stp q16, q17, [sp, #272]
    stp q18, q19, [sp, #304]
    stp q20, q21, [sp, #336]
    stp q22, q23, [sp, #368]
    stp q24, q25, [sp, #400]
    stp q26, q27, [sp, #432]
    stp q28, q29, [sp, #464]
    stp q30, q31, [sp, #496]
    bl mac_tlv_address
    ldp q30, q31, [sp, #496]
    ldp q28, q29, [sp, #464]
    ldp q26, q27, [sp, #432]
    ldp q24, q25, [sp, #400]
    ldp q22, q23, [sp, #368]
    ldp q20, q21, [sp, #336]
    ldp q18, q19, [sp, #304]
    ldp q16, q17, [sp, #272]
    ldp q6, q7, [sp, #240]
    ldp q4, q5, [sp, #208]
    ldp q2, q3, [sp, #176]
    ldp q0, q1, [sp, #144]
    ldr x15, [sp, #128]
    ldp x13, x14, [sp, #112]
    ldp x11, x12, [sp, #96]
    ldp x9, x10, [sp, #80]
    ldp x7, x8, [sp, #64]
    ldp x5, x6, [sp, #48]
    ldp x3, x4, [sp, #32]
    ldp x1, x2, [sp, #16]
    ldp x29, x30, [sp]
    add sp, sp, #528
    .cfi_def_cfa_offset 0
    .cfi_restore x29
    .cfi_restore x30
    ret
    .cfi_endproc
    .size mac_tlv_get_addr, . - mac_tlv_get_addr

// A variadic function: the address of its variable arguments is handed on as one argument more.
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
