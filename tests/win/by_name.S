/* The library as a driver reaches it: through pointers obtained by name. The test programs call vrk_... as ever and
 * land in a stub here. The stub copies the arguments to a stack that is aligned to 4 bytes only, calls the pointer, and
 * looks whether the export removed as many arguments as this list says. */
	.altmacro

	.macro export name, arguments
	stub name, arguments, %(4 * arguments)
	.endm

	.macro stub name, arguments, bytes
	.section .rdata
1:	.asciz "\name"
	.data
2:	.long 1b, \arguments, 0, 0    /* by_name_export */
	.text
	.globl _\name\()@\bytes
_\name\()@\bytes:
	pushl $2b
	jmp call_by_name
	.endm

	.data
	.globl _by_name_exports
_by_name_exports:

	export vrk_get_version, 0
	export vrk_cmyk_to_kcmy_8, 2
	export vrk_cmyk_to_kcmy_16, 2
	export vrk_log_csc1, 9
	export vrk_log_csc2, 9
	export vrk_log_htone, 5
	export vrk_log_ingamma, 5
	export vrk_log_ingamma2, 5
	export vrk_log_outgamma, 4
	export vrk_log_rank, 6
	export vrk_create_preproc, 9
	export vrk_query_preproc_hint, 1
	export vrk_xform_preproc, 5
	export vrk_set_preproc_rgb, 2
	export vrk_free_preproc, 1
	export vrk_create_preproc2, 8
	export vrk_query_preproc2_hint, 1
	export vrk_xform_preproc2, 5
	export vrk_set_preproc2_rgb, 2
	export vrk_free_preproc2, 1
	export vrk_create_csc1, 4
	export vrk_query_csc1_hint, 1
	export vrk_set_csc1_rgb, 2
	export vrk_xform_csc1, 5
	export vrk_free_csc1, 1
	export vrk_create_csc2, 5
	export vrk_query_csc2_hint, 1
	export vrk_set_csc2_rgb, 2
	export vrk_xform_csc2, 4
	export vrk_free_csc2, 1
	export vrk_create_postproc, 17
	export vrk_query_postproc_hint, 1
	export vrk_xform_postproc, 4
	export vrk_free_postproc, 1
	export vrk_create_ed, 7
	export vrk_query_ed_info, 2
	export vrk_query_ed_hint, 1
	export vrk_query_ed_bitlen, 2
	export vrk_start_ed_block, 4
	export vrk_exec_ed, 8
	export vrk_exec_edx, 3
	export vrk_clear_ed_buf, 1
	export vrk_end_ed_block, 1
	export vrk_free_ed, 1
	export vrk_create_dither, 5
	export vrk_query_dither_hint, 1
	export vrk_query_dither_info, 2
	export vrk_query_dither_bitlen, 2
	export vrk_start_dither_block, 4
	export vrk_exec_dither, 8
	export vrk_exec_ditherx, 3
	export vrk_end_dither_block, 1
	export vrk_free_dither, 1

	.data
	.globl _by_name_skew
_by_name_skew:
	.long 4

	.text
/* On entry: the export's record, the return address, the arguments. */
call_by_name:
	pushl %ebp
	movl %esp, %ebp
	pushl %ebx
	pushl %esi
	pushl %edi
	movl 4(%ebp), %ebx
	movl 4(%ebx), %ecx                /* the number of arguments */
	leal (,%ecx,4), %eax
	subl %eax, %esp
	andl $-16, %esp
	subl $16, %esp
	addl _by_name_skew, %esp
	leal 12(%ebp), %esi
	movl %esp, %edi
	rep movsl
	movl %edi, %esi                   /* where the stack pointer belongs after the call */
	movl $0x0badcafe, %edi            /* in a register that the export must keep */
	lock incl 12(%ebx)
	call *8(%ebx)
	movl %esp, %edx
	leal -12(%ebp), %esp
	subl %esi, %edx
	jne broken
	cmpl $0x0badcafe, %edi
	jne broken
	movl 4(%ebx), %ecx
	popl %edi
	popl %esi
	popl %ebx
	popl %ebp
	popl %edx                         /* the record */
	popl %edx                         /* the return address */
	leal (%esp,%ecx,4), %esp
	jmp *%edx
broken:
	andl $-16, %esp
	subl $16, %esp
	movl %ebx, (%esp)
	movl %edx, 4(%esp)
	call _by_name_broken_call
